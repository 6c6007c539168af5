#!/usr/bin/env python3
"""Writes docs/parameters.md and params/*.txt from what the built program says: parameter_tables.py VKRHDR ROOT [--check]

--check writes nothing and exits with 1 when a file is not what the program says.
"""
import json
import pathlib
import subprocess
import sys
import textwrap

FLOW = 'CMultiExposureHDRProcessFlow'

HEAD = '''# Parameters

Written by `tools/scripts/parameter_tables.py` from `vkrhdr params --json`; do not edit. `vkrhdr params` prints the same as a
parameter file, `vkrhdr params NAME` explains one. All values are 32-bit integers. An array `NAME` of n elements stands in
the file as `NAME_0` to `NAME_(n-1)`, a table as `NAME_row_column`. A flag is 1 where what it says holds and 0 where not;
Q4 means 16 = 1.0, Q7 means 128 = 1.0.

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


def default_text(default):
    if not isinstance(default, list):
        return str(default)
    if isinstance(default[0], list):
        assert all(row == default[0] for row in default)
        return f'{default_text(default[0])} in each of {len(default)} rows'
    if len(default) > 2 and len(set(default)) == 1:
        return f'{default[0]} in all {len(default)}'
    return ', '.join(map(str, default))


def elements(name, default):
    """(name as --set has it, default) of a value, a list or a table."""
    if not isinstance(default, list):
        return [(name, default)]
    return [pair for i, value in enumerate(default) for pair in elements(f'{name}_{i}', value)]


def tables(parameters):
    out, place = [], None
    for p in parameters:
        if place is None or place[0] != p['section']:
            out.append(f'\n## {p["section"]}')
        if place != (p['section'], p['group']):
            out += [f'\n### {p["group"]}'] if p['group'] else []
            out.append('\n| parameter | range | default | unit | meaning |\n|---|---|---|---|---|')
        place = (p['section'], p['group'])
        out.append(f'| `{p["name"]}` | {p["min"]} .. {p["max"]} | {default_text(p["default"])} '
                   f'| {p["unit"]} | {p["meaning"]} |')
    return out


def photo_preset(parameters, preset):
    known = {}
    for p in parameters:
        prefix = '' if p['section'] == FLOW else p['section'] + '.'
        known.update(elements(prefix + p['name'], p['default']))
    titles = [f'up to {bound:g} MP' for bound in preset['up_to_megapixels']] + ['above']
    out = [PRESET_HEAD, '| parameter | default | ' + ' | '.join(titles) + ' |', '|---' * (len(titles) + 2) + '|']
    for group in preset['groups']:
        for name, values in group['values'].items():
            out.append(f'| `{name}` | {known[name]} | ' + ' | '.join(map(str, values)) + ' |')
    out.append('')
    for group in preset['groups']:
        names = ', '.join(f'`{name.split(".")[-1]}`' for name in group['values'])
        out += textwrap.wrap(f'{names}: {group["why"]}', 120, initial_indent='- ', subsequent_indent='  ',
                             break_long_words=False, break_on_hyphens=False)
    return out


def main():
    program, root = sys.argv[1], pathlib.Path(sys.argv[2])

    def params(*options):
        return subprocess.run([program, 'params', *options], check=True, capture_output=True, text=True).stdout

    told = json.loads(params('--json'))
    parts = [HEAD, *tables(told['parameters']), *photo_preset(told['parameters'], told['photo_preset']), RATIO.rstrip('\n')]
    wanted = {'docs/parameters.md': '\n'.join(parts) + '\n', 'params/default.txt': params('--shipped'),
              'params/photo.txt': params('--preset', 'photo')}
    wrong = 0
    for name, text in wanted.items():
        target = root / name
        if '--check' not in sys.argv:
            target.write_text(text)
        elif not target.exists() or target.read_text() != text:
            print(f'{name} is not what the program says: run tools/scripts/parameter_tables.py {program} .')
            wrong += 1
    print(f'{len(told["parameters"])} parameters, {wrong} files are not current')
    return 1 if wrong else 0


if __name__ == '__main__':
    sys.exit(main())
