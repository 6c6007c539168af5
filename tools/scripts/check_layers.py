#!/usr/bin/env python3
"""Lower folders of src/ and lower rooms of tools/vkrhdr/ never include higher ones: check_layers.py ROOT

Exit status 1 and a line for every include that does, for every include that does not name its folder, for a command line
parser below commands/, and for every folder of src/ or tools/ that holds more source files than one can overlook.
"""
import collections
import pathlib
import re
import sys

MOST_FILES = 46  # in a folder, without those of its sub-folders

BASE = {'foundation', 'parameters', 'primitives'}
SOURCES = {
    'foundation': set(),
    'parameters': {'foundation'},
    'primitives': {'foundation', 'parameters'},
    'algebra': {'foundation'},
    'warp': BASE | {'algebra'},
    'align': BASE | {'algebra', 'warp'},
    'weights': BASE,
    'fusion': BASE,
    'ghosts': BASE | {'fusion'},
    'face': BASE | {'algebra', 'warp'},
    'tone': BASE | {'face'},
    'local_curve': BASE,
    'flow': BASE | {'align', 'weights', 'ghosts', 'fusion', 'face', 'tone', 'local_curve'},
    'interface': BASE | {'align', 'weights', 'ghosts', 'fusion', 'face', 'tone', 'local_curve', 'flow'},
}

ALL_SOURCES = set(SOURCES) - {'interface'}
ROOMS = {
    'pictures': {'foundation'},
    'burst': ALL_SOURCES | {'scene', 'pictures'},
    'library': ALL_SOURCES | {'pictures', 'burst'},
    'second_attempt': ALL_SOURCES | {'pictures', 'burst', 'library'},
    'fuse': {'pictures', 'burst', 'library', 'second_attempt'},
    'inspect': {'pictures', 'burst', 'library'},
    'commands': ALL_SOURCES | {'pictures', 'burst', 'library', 'second_attempt', 'fuse', 'inspect'},
}


def sources(folder):
    return sorted(p for p in folder.rglob('*') if p.suffix in ('.h', '.cpp', '.inc'))


def faults(path, folder, may_include, parser_allowed):
    """(line, words) of every include of a file that should not be there."""
    for number, line in enumerate(path.read_text().splitlines(), 1):
        match = re.match(r'\s*#\s*include\s+(["<])([^">]+)[">]', line)
        if not match or match.group(2) == 'vkrHdr.h':
            continue
        named, _, rest = match.group(2).partition('/')
        if match.group(1) == '<':
            if named == 'CLI' and not parser_allowed:
                yield number, 'only commands/ knows the command line parser'
        elif not rest:
            yield number, f'write it as "folder/{named}"'
        elif named != folder and named not in may_include:
            yield number, f'{folder}/ must not include {named}/'


def main():
    root = pathlib.Path(sys.argv[1])
    checked, wrong = 0, []
    for house, folders in ((root / 'src', SOURCES), (root / 'tools/vkrhdr', ROOMS)):
        for path in sources(house):
            folder = path.relative_to(house).parts[0]
            if path.parent == house:  # main.cpp, above all rooms
                folder, may_include = 'commands', set(folders)
            elif folder in folders:
                may_include = folders[folder]
            else:
                wrong.append(f'{path}: {folder}/ has no place among the layers')
                continue
            checked += 1
            wrong += [f'{path}:{number}: {words}'
                      for number, words in faults(path, folder, may_include, house.name == 'vkrhdr' and
                                                  folder == 'commands')]
    counts = collections.Counter(path.parent for top in ('src', 'tools') for path in sources(root / top))
    for folder, count in sorted(counts.items()):
        if count > MOST_FILES:
            wrong.append(f'{folder}: holds {count} source files, {MOST_FILES} at most')
    print('\n'.join(wrong + [f'{checked} files, {len(wrong)} faults']))
    return 1 if wrong or not checked else 0


if __name__ == '__main__':
    sys.exit(main())
