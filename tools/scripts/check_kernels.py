#!/usr/bin/env python3
"""Every file of vector kernels declares plain forms, FooScalar beside Foo, that the kernel harness holds them against:
check_kernels.py ROOT. Exit status 1 and one line per kernel that lacks its plain form or is not registered."""
import pathlib
import re
import sys

root = pathlib.Path(sys.argv[1])
registered = set()
for path in (root / 'tests' / 'kernels').glob('*_kernels.cpp'):
    # As BOTH(Foo, ...), or as an argument of a macro that ends there.
    registered |= set(re.findall(r'\w+', path.read_text()))
kernels = [p for p in sorted((root / 'src').rglob('*.cpp')) if 'hwy/foreach_target.h' in p.read_text()]
count = wrong = 0
for path in kernels:
    plain = set(re.findall(r'(\w+)Scalar\(', path.with_suffix('.h').read_text()))
    count += len(plain)
    if path.stem == 'normalize_runs':  # a part of NormalizeWeightRun, whose header declares both forms
        plain = {'NormalizeWeightRun'}
    if not plain:
        print(f'{path}: no plain form is declared in its header')
        wrong += 1
    for name in sorted(plain - registered):
        print(f'{path}: {name} is not registered in tests/kernels')
        wrong += 1
print(f'{len(kernels)} files, {count} plain forms, {wrong} that lack one or its registration')
sys.exit(1 if wrong or not kernels else 0)
