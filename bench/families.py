"""Families of files that are the worst for a step: a table of what n and 2n of their entries take."""
from measuring import LIMIT, QUICK, TOLVANE, Bench, Tool, checked, figures, generate

CURRENT = "5.45"  # the version that every run ends with
UPDATES = {
    "mappings": 10000,
    "subscripts": 10000,
    "datasets": 2000,
    "applications": 5000,
    "drives": 5000,
    "servers": 10000,
}
MERGES = [f"legacy-{kind}" for kind in ("globals", "subscripts", "routines", "servers", "namespaces", "databases")]


def familyrun(name, count):
    """Seconds and instructions of a family, none where they take too long."""
    bench = Bench(generate(name, count))
    command = [TOLVANE, "update", "a"]
    if name.startswith("legacy"):
        bench.write("system", generate("system", 0))
        bench.write("network", bench.text)
        command = [TOLVANE, "merge", "a", "system", "network"]
    wanted = Tool(name, command, success=1, changes=[("[ConfigFile]", "Version", CURRENT)])
    run = checked(bench, wanted, bench.once(command))
    count = bench.instructions(command, 5 * LIMIT) if run is not None else None
    bench.close()
    return run[0] if run is not None else None, count


def cell(value, form):
    return format("too long" if value is None else format(value, form), ">14")


def familyrow(name, count):
    """Prints a family's row. Its seconds and, where they are known, twice the input's instructions by the input's."""
    once, twice = familyrun(name, count), familyrun(name, 2 * count)
    ratio = None if None in (once[1], twice[1]) else twice[1] / once[1]
    cells = [cell(once[0], ".3f"), cell(twice[0], ".3f"), cell(once[1], ","), cell(twice[1], ","), cell(ratio, ".2f")]
    print(f"{name:26} {count:7,} {' '.join(cells)}", flush=True)
    return LIMIT if once[0] is None else once[0], ratio


def families():
    """The families whose keys are unique, which grow with their input, and the same with each key twice."""
    kinds = {**UPDATES, **dict.fromkeys(MERGES, 10000)}
    scale = 10 if QUICK else 1
    heads = ("seconds n", "seconds 2n", "instructions n", "instructions 2n", "2n : n")
    print(f"\nWorst families, with n entries and 2n; too long: more than {LIMIT} s, or {5 * LIMIT} s to count")
    print(f"{'':26} {'n':>7} " + " ".join(f"{head:>14}" for head in heads))
    rows = [familyrow(name, count // scale) for name, count in kinds.items()]
    repeated = [familyrow(f"{name}-repeated", count // scale) for name, count in kinds.items()]
    figures.append(("slowest family, seconds", 1.0, max(row[0] for row in rows)))
    figures.append(("slowest family with each key twice, seconds", 1.0, max(row[0] for row in repeated)))
    ratios = [float("inf") if row[1] is None else row[1] for row in rows]
    figures.append(("instructions of a family, 2n : n", 2.5, max(ratios)))
