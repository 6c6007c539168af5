#!/usr/bin/env python3
"""Makes the model that the library loads from a face network as it is published: wrap_network.py NETWORK MODEL

NETWORK  takes a square picture of 192 x 192, R, G, B in -1..1; gives 16 regressors and a logit for each of 48 x 48
         cells. The first four regressors are the box's centre, counted from the cell's centre, and its size, in pixels.
MODEL    takes 1 x 240 x 320 x 3, R, G, B as (v - 127) / 128, whatever the proportions of the picture were before it was
         squeezed to that; gives the corners x1 y1 x2 y2 in 0..1 of the picture, 1 x 4608 x 4 (not clipped: a box may
         reach beyond), and the pairs (1 - p, p), p the probability of a face, 1 x 4608 x 2.

A squeezed portrait picture shows faces too wide to be found, so the network looks at two readings of the picture at
once, as a batch: as 4:3 (boxes 0..2303) and stretched back to 3:4 (boxes 2304..4607).
"""
import math
import sys

from graph_file import GraphFile

SIDE, CELLS, REGRESSORS = 192, 48, 16
ANCHORS = CELLS * CELLS
SHORT = SIDE * 3 // 4  # the picture in the square: SIDE x SHORT lying, SHORT x SIDE standing
BAR = (SIDE - SHORT) // 2  # black, on both sides of it
BLACK = -127 / 128
# The library takes a face from 0.8 on, where the network's authors take it from 0.5 on.
LOGIT_SHIFT = math.log(0.8 / (1 - 0.8))


def step(graph, name, inputs, shape):
    return graph.add_operator(name, inputs, graph.add_tensor(name.lower(), shape))


def add_readings(graph, picture, square):
    """From the picture to the network's input: scaled to fit, barred to a square, black = -1, white = 1."""
    readings = []
    for height, width in ((SHORT, SIDE), (SIDE, SHORT)):
        rows, columns = (SIDE - height) // 2, (SIDE - width) // 2
        bars = graph.add_constant([4, 2], [0, 0, rows, rows, columns, columns, 0, 0])
        black = graph.add_constant([1], [BLACK])
        size = graph.add_constant([2], [height, width])
        fitted = step(graph, 'RESIZE_BILINEAR', [picture, size], [1, height, width, 3])
        readings.append(step(graph, 'PADV2', [fitted, bars, black], [1, SIDE, SIDE, 3]))
    both = step(graph, 'CONCATENATION', readings, [2, SIDE, SIDE, 3])
    # v / 127.5 - 1, out of (v - 127) / 128
    scaled = step(graph, 'MUL', [both, graph.add_constant([1], [128 / 127.5])], [2, SIDE, SIDE, 3])
    graph.add_operator('ADD', [scaled, graph.add_constant([1], [-0.5 / 127.5])], square)


def add_corners(graph, regressors):
    """Corners in the square of the network, then without the bars, as if they were no part of the picture."""
    corner_of = ((1, 0, -0.5, 0), (0, 1, 0, -0.5), (1, 0, 0.5, 0), (0, 1, 0, 0.5))  # of x, y, width, height
    weights = [factor / SIDE for row in corner_of for factor in row + (0,) * (REGRESSORS - 4)]
    weights = graph.add_constant([4, REGRESSORS], weights)
    offsets = step(graph, 'FULLY_CONNECTED', [regressors, weights], [2, ANCHORS, 4])
    centres = [(i + 0.5) / CELLS for i in range(CELLS)]
    anchors = graph.add_constant([1, ANCHORS, 4], [v for y in centres for x in centres for v in (x, y, x, y)])
    corners = step(graph, 'ADD', [offsets, anchors], [2, ANCHORS, 4])

    stretch, shift = SIDE / SHORT, -BAR / SHORT
    lying, standing = [1.0, stretch] * 2, [stretch, 1.0] * 2
    scaled = step(graph, 'MUL', [corners, graph.add_constant([2, 1, 4], lying + standing)], [2, ANCHORS, 4])
    lying, standing = [0.0, shift] * 2, [shift, 0.0] * 2
    placed = step(graph, 'ADD', [scaled, graph.add_constant([2, 1, 4], lying + standing)], [2, ANCHORS, 4])
    return step(graph, 'RESHAPE', [placed, graph.add_constant([3], [1, 2 * ANCHORS, 4])], [1, 2 * ANCHORS, 4])


def add_scores(graph, logits):
    """1 - p is the logistic function of the negative."""
    weights = graph.add_constant([2, 1], [-1.0, 1.0])
    shift = graph.add_constant([2], [-LOGIT_SHIFT, LOGIT_SHIFT])
    pairs = step(graph, 'FULLY_CONNECTED', [logits, weights, shift], [2, ANCHORS, 2])
    scores = step(graph, 'LOGISTIC', [pairs], [2, ANCHORS, 2])
    return step(graph, 'RESHAPE', [scores, graph.add_constant([3], [1, 2 * ANCHORS, 2])], [1, 2 * ANCHORS, 2])


def wrap(network):
    graph = GraphFile(network)
    by_shape = {tuple(graph.shape(tensor)): tensor for tensor in graph.inputs + graph.outputs}
    square, regressors, logits = (by_shape[shape] for shape in ((1, SIDE, SIDE, 3), (1, ANCHORS, REGRESSORS),
                                                                (1, ANCHORS, 1)))
    graph.set_batch(2)

    network_operators, graph.operators = graph.operators, []
    picture = graph.add_tensor('picture', [1, 240, 320, 3])
    add_readings(graph, picture, square)
    graph.operators += network_operators
    graph.inputs = [picture]
    graph.outputs = [add_corners(graph, regressors), add_scores(graph, logits)]
    return graph.to_bytes()


if __name__ == '__main__':
    with open(sys.argv[1], 'rb') as network:
        model = wrap(network.read())
    with open(sys.argv[2], 'wb') as file:
        file.write(model)
