#!/usr/bin/env python3
"""Writes docs/parameters.md from the tables in the library's and the tool's sources: parameter_tables.py ROOT [--check]

--check writes nothing and exits with 1 when the file is not what the sources say.
"""
import pathlib
import re
import sys
import textwrap

# Sections in the order of the parameter file.
SOURCES = [
    'src/flow/flow_parameters.cpp',
    'src/align/align_parameters.cpp',
    'src/align/feature_point_detection.cpp',
    'src/align/homograph_mapping_filter.cpp',
    'src/ghosts/ghost_parameters.cpp',
    'src/local_curve/local_curve_parameters.cpp',
]

PRESET = 'tools/vkrhdr/library/photo_preset.cpp'

HEAD = '''# Parameters

Written by `tools/scripts/parameter_tables.py` from the tables in the sources; do not edit. `vkrhdr params` prints the
same as a parameter file. All values are 32-bit integers. An array `NAME` of n elements stands in the file as `NAME_0` to
`NAME_(n-1)`, a table as `NAME_row_column`. Q4 means 16 = 1.0, Q7 means 128 = 1.0.

In a file every section begins with its name on a line of its own; a value line is `NAME=VALUE`, and what follows a `;`
is not read. A value out of its range is brought to the nearer bound with a message; an
[enciphered file](enciphered_files.md) is read more strictly. `params/default.txt` holds the defaults without debug files,
`params/photo.txt` [the photo preset](#the-photo-preset).

Where a lower bound lies above the upper one, or a list's first node above its last, what is below the lower or first is
brought to that one; it is tested first.
'''

PRESET_HEAD = '''
## The photo preset

What `vkrhdr` sets unless `--preset default` or `--params` says otherwise; all other parameters have their defaults but
`nRatio`, which is [measured](#the-exposure-ratio), and no debug files are written. Some values go by the number of pixels:
`vkrhdr params --for WxH` prints the whole set for a size, `params/photo.txt` holds the one for 12 megapixels (4000 x 3000).
`vkrhdr fuse` and `vkrhdr align` go by the size of the pictures.
'''

RATIO = '''
## The exposure ratio

`nRatio_k` is how many times as much light exposure k + 1 got as exposure k (0 the darkest), in Q4: 16 is the same light,
32 one stop, 64 two. Re-linearisation renders every frame anew from the light that all of them saw. A wrong ratio therefore
shows even where nothing moved: brackets two stops apart with the default of one stop have pale patches on walls, dark
clouds around lamps and white seams along tree tops; with the right ratio they vanish.

What counts is the ratio that makes the frames agree through the library's display curve, whatever the camera's own tone
curve did. With the photo preset `vkrhdr` measures it: the median of linear(brighter) / linear(darker) over the samples of
R, G and B at half size that are well exposed in both (16 .. 240), once a shift between the frames is taken back. It keeps
the parameter's value where fewer than one sample in 1024 is, says so when the exposures in the EXIF differ by more than a
stop, and prints the ratios with `--verbose`; `--set nRatio_k=V` goes over it. Real bursts, measured and by time, ISO and
aperture:

| burst | measured | exposure times |
|---|---|---|
| arch at night | 9.00, 10.38, 6.44 | 7.5, 10, 6 |
| canal | 4.50, 3.88 | 4, 4 |
| hall | 4.38, 3.62 | 4, 4.17 |
| library at night | 4.25, 5.06, 1.62 | 4, 5, 1.47 |
| pantry | 4.81, 4.88, 4.12 | 4.33, 3.9, 3.85 |
| buildings, phone | 2.12, 2.25, 2.44, 1.75 | 1.6, 2.5, 2.5, 2 |
| street at night, phone | 3.00, 1.62, 2.00 | 4.1, 3.6, 4 |

Most cameras stay within a quarter of a stop of the exposure times; a phone that brightens the shadows itself does not. A
host that fixes its own curve should measure once and set the values; one that only knows the exposure times may take 16
times their ratio; a ratio that changes from burst to burst has to be set in a parameter file before `vkrHdrInit`.
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


def table_rows(found):
    return [row for row in found if not isinstance(row, str)]


def defaults(root):
    """The default of every value as --set names it: NAME of the flow, Section.NAME of its filters, NAME_i of an array,
    NAME_row_i of a table."""
    known = {}
    for source in SOURCES:
        section, found = rows(root / source)
        prefix = '' if section == 'CMultiExposureHDRProcessFlow' else section + '.'
        for name, _, default, _ in table_rows(found):
            rows_of_same = re.match(r'(.*) in each of (\d+) rows', default)
            if rows_of_same:
                for row in range(int(rows_of_same.group(2))):
                    values = enumerate(rows_of_same.group(1).split(', '))
                    known.update({f'{prefix}{name}_{row}_{i}': value for i, value in values})
                continue
            same = re.match(r'(-?\d+) in all (\d+)', default)
            values = [same.group(1)] * int(same.group(2)) if same else default.split(', ')
            known[prefix + name] = values[0]
            known.update({f'{prefix}{name}_{i}': value for i, value in enumerate(values)})
    return known


def preset_entries(text, classes):
    """(name, value of each size class, what the comment above says or '') of the tool's table."""
    found, words = [], []
    for line in text[text.index('kPhotoValues[] = {'):].splitlines():
        comment = re.match(r'\s*// (.*)', line)
        entry = re.match(r'\s*\{"([\w.]+)",\s*(?:All\((-?\d+)\)|\{([-\d, ]+)\})\},', line)
        if comment and not comment.group(1).startswith('clang-format'):
            words.append(comment.group(1))
        elif entry:
            name, one, many = entry.groups()
            values = [one] * classes if one else [v.strip() for v in many.split(',')]
            assert len(values) == classes, f'{name} has {len(values)} values, not {classes}'
            found.append((name, values, ' '.join(words)))
            words = []
        elif line.startswith('}'):
            break
    return found


def photo_preset(root):
    """The section about what the tool sets for photos."""
    text = (root / PRESET).read_text()
    bounds = re.search(r'kUpToMegapixels\[\] = \{(.*)\}', text).group(1).split(', ')
    titles = [f'up to {bound} MP' for bound in bounds] + ['above']
    known, entries = defaults(root), preset_entries(text, len(titles))
    out = [PRESET_HEAD, '| parameter | default | ' + ' | '.join(titles) + ' |', '|---' * (len(titles) + 2) + '|']
    out += [f'| `{name}` | {known[name]} | ' + ' | '.join(values) + ' |' for name, values, _ in entries]
    out.append('')
    together = []  # an entry without words of its own belongs to the one above
    for name, _, words in entries:
        short = f'`{name.split(".")[-1]}`'
        if words or not together:
            together.append([[short], words])
        else:
            together[-1][0].append(short)
    for names, words in together:
        out += textwrap.wrap(f'{", ".join(names)}: {words}', 120, initial_indent='- ', subsequent_indent='  ',
                             break_long_words=False, break_on_hyphens=False)
    return out


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
    out += photo_preset(root)
    out.append(RATIO.rstrip('\n'))
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
