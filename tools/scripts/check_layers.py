#!/usr/bin/env python3
"""Lower folders of src/ never include higher ones: check_layers.py ROOT. Exit status 1 and one line per include that does."""
import pathlib
import re
import sys

BASE = {'foundation', 'primitives'}
MAY_INCLUDE = {
    'foundation': set(),
    'primitives': {'foundation'},
    'algebra': {'foundation'},
    'align': BASE | {'algebra'},
    'weights': BASE,
    'fusion': BASE,
    'ghosts': BASE | {'fusion'},
    'face': BASE | {'align', 'algebra'},
    'tone': BASE | {'face'},
    'local_curve': BASE,
    'flow': BASE | {'align', 'weights', 'ghosts', 'fusion', 'face', 'tone', 'local_curve'},
    'interface': BASE | {'align', 'weights', 'ghosts', 'fusion', 'face', 'tone', 'local_curve', 'flow'},
}

root = pathlib.Path(sys.argv[1]) / 'src'
wrong = 0
files = sorted(p for p in root.rglob('*') if p.suffix in ('.h', '.cpp', '.inc'))
for path in files:
    folder = path.relative_to(root).parts[0]
    for number, line in enumerate(path.read_text().splitlines(), 1):
        match = re.match(r'\s*#\s*include\s+"([a-z_]+)/', line)
        if match and match.group(1) != folder and match.group(1) not in MAY_INCLUDE[folder]:
            print(f'{path}:{number}: {folder}/ must not include {match.group(1)}/')
            wrong += 1
print(f'{len(files)} files, {wrong} includes against the layers')
sys.exit(1 if wrong or not files else 0)
