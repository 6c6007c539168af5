#!/usr/bin/env python3
"""How good fused pictures are, by numbers: judge.py PROGRAM FOLDER... [--set NAME:OPTIONS]... [--only ours] [--keep DIR]

PROGRAM is the built vkrhdr; every FOLDER holds a burst: pictures that sort in the order of exposure, and, if there is one,
burst.json with "kind" (static, moving, handheld) and "reference". Without it a burst whose frames lie on each other stands
still.

Every way to fuse is judged against frames in the geometry of its own result: as they are where the camera stood, else
warped to the frame that the way left in place, 8 % of the border left out. Where things moved, outside a mask made of the
frames alone, the same for all. Ours runs once a --set, "natural:" and "vivid:--preset vivid" without any.

Prints one table a kind of MEF-SSIM, and one of what it does not see: see measures.py.
"""
import argparse
import json
import os
import subprocess
import sys
import tempfile

import cv2
import numpy as np

import geometry
import measures
import peers
from mef_ssim import mef_ssim

PICTURES = ('.jpg', '.jpeg', '.png')
LIES_STILL = 1.0  # pixels that frames may lie apart and still count as lying on each other


class Burst:
    def __init__(self, folder):
        self.name = os.path.basename(os.path.normpath(folder))
        self.paths = sorted(os.path.join(folder, f) for f in os.listdir(folder) if f.lower().endswith(PICTURES))
        about = os.path.join(folder, 'burst.json')
        self.about = json.load(open(about)) if os.path.exists(about) else {}
        self.frames = [cv2.imread(p) for p in self.paths]
        self.paths = sorted(self.paths, key=lambda p: self.frames[self.paths.index(p)].mean())
        self.frames = sorted(self.frames, key=lambda f: f.mean())
        self.middle = self.about.get('reference', (len(self.frames) - 1) // 2)
        self.links = geometry.links(self.frames)
        self._aligned = {}

    def group(self):
        kind, tags = self.about.get('kind', ''), self.about.get('tags', [])
        if kind == 'face':
            kind = 'handheld' if 'handheld' in tags else 'moving'
        if kind:
            return {'static': 'still'}.get(kind, kind)
        return 'still' if self.drift() < LIES_STILL else 'handheld'

    def drift(self):
        known = [geometry.shift_of(h, self.frames[0].shape) for h in self.links if h is not None]
        return max(known, default=0.0)

    def aligned(self, reference):
        """The frames in the geometry of one of them, None where a frame could not be brought there, and where all are
        covered."""
        if reference not in self._aligned:
            shape = self.frames[0].shape
            to_reference = geometry.to_frame(self.links, reference)
            if self.group() != 'handheld' and self.drift() < LIES_STILL:
                to_reference = [np.eye(3)] * len(self.frames)
            frames, inside = [], np.ones(shape[:2], bool)
            for frame, h in zip(self.frames, to_reference):
                same = h is not None and np.array_equal(h, np.eye(3))
                frames.append(None if h is None else frame if same else geometry.warp(frame, h))
                if h is not None and not same:
                    inside &= geometry.covered(h, shape)
            if self.group() == 'handheld':
                y, x = (round(0.08 * n) for n in shape[:2])
                inside[:y] = inside[-y:] = inside[:, :x] = inside[:, -x:] = False
            self._aligned[reference] = frames, inside
        return self._aligned[reference]

    def moved(self, reference):
        frames, _ = self.aligned(reference)
        return geometry.moving_mask([f for f in frames if f is not None])


def score(burst, picture, reference):
    frames, inside = burst.aligned(reference)
    if burst.group() == 'moving':
        inside = inside & ~burst.moved(reference)
    whole = None if inside.all() else inside
    return mef_ssim([geometry.grey(f) for f in frames if f is not None], geometry.grey(picture), whole)


def ours(program, burst, options, folder):
    """The result, the number of the reference among the frames, and what the program said."""
    path = os.path.join(folder, 'result.png')
    run = subprocess.run([program, 'fuse', *burst.paths, '-o', path, *options], capture_output=True, text=True)
    if run.returncode != 0:
        sys.exit(f'{burst.name}: {run.stderr}')
    reference = burst.middle
    for line in run.stderr.splitlines():
        if line.strip().endswith(', reference') or ', reference (' in line:
            reference = next(k for k, p in enumerate(burst.paths) if p in line)
    return cv2.imread(path), reference, run.stderr


def ways_of(args, burst, folder):
    for text in args.set or ['natural:', 'vivid:--preset vivid']:
        name, _, options = text.partition(':')
        picture, reference, said = ours(args.program, burst, options.split(), folder)
        yield name, picture, reference, said
    if args.only == 'ours':
        return
    yield 'Mertens', peers.mertens(burst.frames), burst.middle, ''
    yield 'ORB', peers.mertens(peers.orb_aligned(burst.frames, burst.middle)), burst.middle, ''
    yield 'ECC', peers.mertens(peers.ecc_aligned(burst.frames, burst.middle)), burst.middle, ''


def judge(args, burst):
    scores, numbers = {}, {}
    with tempfile.TemporaryDirectory() as folder:
        for name, picture, reference, said in ways_of(args, burst, folder):
            scores[name] = score(burst, picture, reference)
            numbers[name] = measures.all_of(burst, picture, reference)
            if args.keep:
                os.makedirs(args.keep, exist_ok=True)
                cv2.imwrite(os.path.join(args.keep, f'{burst.name}_{name}.png'), picture)
                if said:
                    open(os.path.join(args.keep, f'{burst.name}_{name}.txt'), 'w').write(said)
    if args.only != 'ours':
        singles = [score(burst, frame, k) for k, frame in enumerate(burst.frames)]
        scores['best frame'] = max(singles)
    return scores, numbers


def print_table(title, rows, form):
    names = list(dict.fromkeys(name for row in rows.values() for name in row))
    print(f'\n{title}\n\n| burst | ' + ' | '.join(names) + ' |\n|---|' + '--:|' * len(names))
    for burst, row in rows.items():
        print(f'| {burst} | ' + ' | '.join(form % row[n] if n in row else '' for n in names) + ' |')
    if len(rows) > 1:
        means = [np.mean([row[n] for row in rows.values() if n in row]) for n in names]
        print('| mean | ' + ' | '.join(form % m for m in means) + ' |')
    sys.stdout.flush()


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument('program')
    parser.add_argument('folders', nargs='+')
    parser.add_argument('--set', action='append')
    parser.add_argument('--only', choices=['ours'])
    parser.add_argument('--keep')
    args = parser.parse_args()
    groups, numbers = {}, {}
    for folder in args.folders:
        burst = Burst(folder)
        scores, measured = judge(args, burst)
        groups.setdefault(burst.group(), {})[burst.name] = scores
        for name, values in measured.items():
            for what, value in values.items():
                numbers.setdefault(what, {}).setdefault(burst.name, {})[name] = value
        print(burst.name, burst.group(), 'drift %.1f' % burst.drift(),
              ' '.join(f'{n} {s:.4f}' for n, s in scores.items()), flush=True)
    for group, rows in groups.items():
        print_table('MEF-SSIM, ' + group, rows, '%.4f')
    for what, rows in numbers.items():
        print_table(what, rows, '%.2f')


if __name__ == '__main__':
    main()
