#!/usr/bin/env python3
"""Writes docs/parameters.md from the tables in the sources: parameter_tables.py ROOT [--check]

--check writes nothing and exits with 1 when the file is not what the sources say.
"""
import pathlib
import re
import sys

# Sections in the order of the parameter file.
SOURCES = [
    'src/flow/flow_parameters.cpp',
    'src/align/align_parameters.cpp',
    'src/align/feature_point_detection.cpp',
    'src/align/homograph_mapping_filter.cpp',
    'src/fusion/ghost_parameters.cpp',
    'src/tone/local_curve_parameters.cpp',
]

HEAD = '''# Parameters

Written by `tools/scripts/parameter_tables.py` from the tables in the sources; do not edit. `vkrhdr params` prints the
same as a parameter file. All values are 32-bit integers. An array `NAME` of n elements stands in the file as `NAME_0` to
`NAME_(n-1)`, a table as `NAME_row_column`. Q4 means 16 = 1.0, Q7 means 128 = 1.0.

In a file every section begins with its name on a line of its own; a value line is `NAME=VALUE`, and what follows a `;`
is not read. A value out of its range is brought to the nearer bound with a message.
'''


def rows(path):
    """(name of the section, rows or headings) of one source."""
    text = path.read_text()
    section = re.search(r'StoreName\("(\w+)"\)', text).group(1)
    body = text[re.search(r'^void \w+::RegisterParameters\(\)', text, re.M).start():]
    found, heading = [], ''
    for line in body.splitlines():
        comment = re.match(r'\s*// (\S.*)$', line)
        if comment and not line.lstrip().startswith('//    '):
            if heading:  # two in a row: a heading, then the meaning of the next line
                found.append(heading.rstrip('.'))
            heading = comment.group(1)
            continue
        entry = re.match(r'\s*PARAM(_ARRAY)?\((\w+),\s*(-?\d+),\s*(-?\d+),\s*([^)]*)\);(?:\s*// (.*))?', line)
        table = re.search(r'AddParameterArray2D\(m_Params, "(\w+)", .*, (\d+), (-?\d+), (-?\d+)\)', line)
        if entry:
            array, name, low, high, default, meaning = entry.groups()
            values = [v.strip() for v in default.split(',')]
            if array and len(set(values)) == 1 and len(values) > 2:
                default = f'{values[0]} in all {len(values)}'
            elif array:
                default = ', '.join(values)
            if heading and not meaning:
                meaning = heading[0].lower() + heading[1:].rstrip('.')
            elif heading:
                found.append(heading.rstrip('.'))
            found.append((name, f'{low} .. {high}', default.strip(), meaning or ''))
            heading = ''
        elif table:
            name, count, low, high = table.groups()
            values = re.findall(name + r'\[\w+\]\[\d\] = (\d+)', body)
            found.append((name, f'{low} .. {high}', f'{", ".join(values)} in each of 8 rows',
                          'points of the soft threshold by level, difference values'))
        elif line.startswith('}'):
            break
    return section, found


def document(root):
    out = [HEAD]
    for source in SOURCES:
        section, found = rows(root / source)
        out.append(f'\n## {section}')
        table_open = False
        for row in found:
            if isinstance(row, str):
                out.append(f'\n### {row}')
                table_open = False
                continue
            if not table_open:
                out.append('\n| parameter | range | default | meaning |\n|---|---|---|---|')
                table_open = True
            out.append('| `{}` | {} | {} | {} |'.format(*row))
    return '\n'.join(out) + '\n'


def main():
    root = pathlib.Path(sys.argv[1])
    target = root / 'docs/parameters.md'
    text = document(root)
    if '--check' not in sys.argv:
        target.write_text(text)
        return 0
    if not target.exists() or target.read_text() != text:
        print('docs/parameters.md is not what the sources say: run tools/scripts/parameter_tables.py')
        return 1
    print(f'docs/parameters.md is current, {text.count(chr(10))} lines')
    return 0


if __name__ == '__main__':
    sys.exit(main())
