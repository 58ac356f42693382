#!/usr/bin/env python3
"""Truth tables of given shapes, the same bytes for the same shape and seed.

  shapes.py                     lists the shapes
  shapes.py NAME FILE           writes one
  shapes.py pins PINS FILE      writes a design of that many pins, each locked by a property, and a node per five pins

The '#$' attribute lines are comments to other tools that read PLA files, so one file serves the program and its peers.
"""
from __future__ import annotations

import random
import sys
from dataclasses import dataclass


@dataclass(frozen=True)
class Shape:
    inputs: int
    outputs: int
    terms: int
    literals: float  # probability that a term uses an input
    ones: float      # mean number of outputs that a term drives
    note: str


SHAPES: dict[str, Shape] = {
    "tiny": Shape(3, 2, 4, 0.7, 1, "start-up time"),
    "a3": Shape(16, 16, 1_000, 0.75, 4, "term ladder"),
    "a4": Shape(16, 16, 10_000, 0.75, 4, "term ladder"),
    "a5": Shape(16, 16, 100_000, 0.75, 4, "term ladder"),
    "a6": Shape(16, 16, 1_000_000, 0.75, 4, "term ladder"),
    "a7": Shape(16, 16, 10_000_000, 0.75, 4, "term ladder, 340 MB"),
    "b": Shape(100, 50, 100_000, 0.30, 5, "middle"),
    "c": Shape(1000, 100, 20_000, 0.10, 5, "wide input part"),
    "d": Shape(32, 500, 20_000, 0.50, 2, "sparse output part"),
    "f4": Shape(50, 1, 20_000, 0.30, 1, "ladder of the terms of one output"),
    "f5": Shape(50, 1, 200_000, 0.30, 1, "ladder of the terms of one output"),
    "f6": Shape(50, 1, 2_000_000, 0.30, 1, "ladder of the terms of one output"),
    "s1": Shape(1_000, 100, 200, 0.05, 2, "input-name ladder"),
    "s2": Shape(4_000, 100, 200, 0.0125, 2, "input-name ladder"),
    "s3": Shape(16_000, 100, 200, 0.00390625, 2, "input-name ladder"),
    "g1": Shape(16, 1_000, 200, 0.5, 10, "output-name ladder"),
    "g2": Shape(16, 4_000, 200, 0.5, 40, "output-name ladder"),
    "g3": Shape(16, 16_000, 200, 0.5, 160, "output-name ladder"),
    "l1": Shape(50_000, 1, 1, 1.0, 1, "ladder of the literals of one term"),
    "l2": Shape(100_000, 1, 1, 1.0, 1, "ladder of the literals of one term"),
    "l3": Shape(200_000, 1, 1, 1.0, 1, "ladder of the literals of one term"),
    "n1": Shape(500, 500, 500, 1.0, 20, "dense square ladder"),
    "n2": Shape(1_000, 1_000, 1_000, 1.0, 20, "dense square ladder"),
    "n3": Shape(2_000, 2_000, 2_000, 1.0, 20, "dense square ladder"),
    "w1": Shape(2_000, 2_000, 40, 0.01, 200, "wide sparse ladder"),
    "w2": Shape(4_000, 4_000, 40, 0.005, 400, "wide sparse ladder"),
    "w3": Shape(8_000, 8_000, 40, 0.0025, 800, "wide sparse ladder"),
}


def header(pins: list[str], nodes: list[str], ins: list[str], outs: list[str]) -> list[str]:
    lines = ["#$ MODULE bench", f"#$ PINS {len(pins)} " + " ".join(pins)]
    if nodes:
        lines.append(f"#$ NODES {len(nodes)} " + " ".join(nodes))
    return lines + [f".i {len(ins)}", f".o {len(outs)}", ".ilb " + " ".join(ins), ".ob " + " ".join(outs)]


def output_part(outputs: int, ones: float, rng: random.Random) -> bytes:
    row = bytearray(b"0") * outputs
    count = max(1, min(outputs, round(rng.uniform(0.5, 1.5) * ones)))
    for j in rng.sample(range(outputs), count):
        row[j] = ord("1")
    return bytes(row)


def write_table(path: str, shape: Shape, seed: int = 1) -> None:
    rng = random.Random(seed)
    ins = [f"in{k}" for k in range(shape.inputs)]
    outs = [f"out{j}" for j in range(shape.outputs)]
    # A random byte becomes a literal, in equal parts true and complemented, or '-'.
    used = max(2, round(256 * shape.literals))
    characters = bytes(ord("01"[i & 1]) if i < used else ord("-") for i in range(256))
    # Output parts come from a pool: sampling millions of them would take longer than all measuring.
    pool = [output_part(shape.outputs, shape.ones, rng) for _ in range(min(shape.terms, max(4096, 4 * shape.outputs)))]
    with open(path, "wb") as out:
        out.write(("\n".join([*header(ins + outs, [], ins, outs), f".p {shape.terms}"]) + "\n").encode())
        for first in range(0, shape.terms, step := max(1, (1 << 20) // shape.inputs)):
            count = min(step, shape.terms - first)
            body = rng.randbytes(count * shape.inputs).translate(characters)
            picks = rng.choices(pool, k=count)
            n = shape.inputs
            out.write(b"".join([body[i * n:(i + 1) * n] + b" " + picks[i] + b"\n" for i in range(count)]))
        out.write(b".e\n")


def write_locked_pins(path: str, pins: int) -> None:
    """Sixteen pins are inputs, all others and the nodes outputs; each is driven by one of sixteen terms."""
    names = [f"pin{k}" for k in range(pins)]
    nodes = [f"node{k}" for k in range(pins // 5)]
    ins, outs = names[:16], names[16:] + nodes
    lines = header(names, nodes, ins, outs)
    lines += [f"#$ PROPERTY corvane LOCK {name} {place}" for place, name in enumerate(names, 1)]
    for k in range(16):
        term = "".join("1" if i == k else "0" if i == (k + 1) % 16 else "-" for i in range(16))
        lines.append(term + " " + "".join("1" if j % 16 == k else "0" for j in range(len(outs))))
    with open(path, "w", encoding="ascii") as out:
        out.write("\n".join([*lines, ".e"]) + "\n")


def main(argv: list[str]) -> int:
    if not argv:
        for name, s in SHAPES.items():
            print(f"{name:5} {s.inputs:6} x {s.outputs:5} x {s.terms:9}  literals {s.literals}  ones {s.ones}  {s.note}")
    elif len(argv) == 2 and argv[0] in SHAPES:
        write_table(argv[1], SHAPES[argv[0]])
    elif len(argv) == 3 and argv[0] == "pins" and argv[1].isdigit() and int(argv[1]) > 16:
        write_locked_pins(argv[2], int(argv[1]))
    else:
        print(__doc__, file=sys.stderr)
        return 2
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
