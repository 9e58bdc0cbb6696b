#!/usr/bin/env python3
"""odb_export read back with VTK's own reader.

Builds a database with odb_build from a description written here (one element of every
cell shape, in the solver's node order, with hand-chosen field values), exports it with
odb_export and checks with VTK (python3-vtk9):
  - the .pvd lists every frame with strictly increasing times;
  - point and cell counts, and every cell's VTK type;
  - node order: every face of a solid cell points outwards, and every midside node of a
    quadratic cell lies in the middle of the edge VTK says it belongs to;
  - the values of U at the points, the cell averages of S and their derived von Mises and
    principal values, a section-point array, and the set arrays.

usage: check_export.py ODB_BUILD ODB_EXPORT WORKDIR
"""
import json
import math
import os
import subprocess
import sys
import xml.etree.ElementTree as ET

import vtk

odb_build, odb_export, work = sys.argv[1:4]
os.makedirs(work, exist_ok=True)


def midpoints(corners, edges):
    """The corners followed by the midpoint of each edge (1-based corner numbers)."""
    mids = [[(corners[a - 1][k] + corners[b - 1][k]) / 2 for k in range(3)] for a, b in edges]
    return corners + mids


HEX = [(0, 0, 0), (1, 0, 0), (1, 1, 0), (0, 1, 0), (0, 0, 1), (1, 0, 1), (1, 1, 1), (0, 1, 1)]
WEDGE = [(0, 0, 0), (1, 0, 0), (0, 1, 0), (0, 0, 1), (1, 0, 1), (0, 1, 1)]
TET = [(0, 0, 0), (1, 0, 0), (0, 1, 0), (0, 0, 1)]
QUAD = [(0, 0, 0), (1, 0, 0), (1, 1, 0), (0, 1, 0)]
TRI = [(0, 0, 0), (1, 0, 0), (0, 1, 0)]
# Solver deck order: corners, then midside nodes edge by edge.
HEX_EDGES = [(1, 2), (2, 3), (3, 4), (4, 1), (5, 6), (6, 7), (7, 8), (8, 5),
             (1, 5), (2, 6), (3, 7), (4, 8)]
WEDGE_EDGES = [(1, 2), (2, 3), (3, 1), (4, 5), (5, 6), (6, 4), (1, 4), (2, 5), (3, 6)]
TET_EDGES = [(1, 2), (2, 3), (3, 1), (1, 4), (2, 4), (3, 4)]

# (element label, type, node coordinates in deck order, expected VTK cell type)
ELEMENTS = [
    (1, "C3D8", HEX, vtk.VTK_HEXAHEDRON),
    (2, "C3D20R", midpoints(HEX, HEX_EDGES), vtk.VTK_QUADRATIC_HEXAHEDRON),
    (3, "C3D6", WEDGE, vtk.VTK_WEDGE),
    (4, "C3D15", midpoints(WEDGE, WEDGE_EDGES), vtk.VTK_QUADRATIC_WEDGE),
    (5, "C3D4", TET, vtk.VTK_TETRA),
    (6, "C3D10", midpoints(TET, TET_EDGES), vtk.VTK_QUADRATIC_TETRA),
    (7, "S4R", QUAD, vtk.VTK_QUAD),
    (8, "S8R", midpoints(QUAD, [(1, 2), (2, 3), (3, 4), (4, 1)]), vtk.VTK_QUADRATIC_QUAD),
    (9, "CPS3", TRI, vtk.VTK_TRIANGLE),
    (10, "CPE6", midpoints(TRI, [(1, 2), (2, 3), (3, 1)]), vtk.VTK_QUADRATIC_TRIANGLE),
    (11, "B31", [(0, 0, 0), (1, 0, 0)], vtk.VTK_LINE),
    (12, "B32", [(0, 0, 0), (0.5, 0, 0), (1, 0, 0)], vtk.VTK_QUADRATIC_EDGE),
    (13, "MASS", [(0, 0, 0)], vtk.VTK_VERTEX),
]

nodes, elements = [], []
for label, etype, coords, _ in ELEMENTS:
    # Element e has nodes 100e+1, 100e+2, ...; each element sits 2 units further along x.
    labels = [100 * label + i + 1 for i in range(len(coords))]
    nodes += [[n, c[0] + 2 * label, c[1], c[2]] for n, c in zip(labels, coords)]
    elements.append({"type": etype, "label": label, "nodes": labels})
node_labels = [n[0] for n in nodes]


def u_rows(scale):
    return [[scale * n, -scale * n, 0.5] for n in node_labels]


TENSOR = ["S11", "S22", "S33", "S12", "S13", "S23"]
description = {
    "title": "every cell shape",
    "instances": [{
        "name": "PART-1",
        "nodes": nodes,
        "elements": elements,
        "nodeSets": {"HEX_NODES": [101, 102, 103, 104, 105, 106, 107, 108]},
        "elementSets": {"SOLIDS": [1, 2, 3, 4, 5, 6], "SHELLS": [7, 8]},
    }],
    "steps": [
        {"name": "Load", "domain": "TIME", "totalTime": 0.0, "frames": [
            {"value": 0.5, "fieldOutputs": [
                {"name": "U", "type": "VECTOR", "componentLabels": ["U1", "U2", "U3"],
                 "blocks": [{"instance": "PART-1", "position": "NODAL",
                             "nodeLabels": node_labels, "data": u_rows(1)}]},
                {"name": "S", "type": "TENSOR_3D_FULL", "componentLabels": TENSOR, "blocks": [
                    # Hex: S11 100 and 200 at its two points -> mean 150, uniaxial.
                    {"instance": "PART-1", "elementType": "C3D8",
                     "position": "INTEGRATION_POINT", "elementLabels": [1, 1],
                     "integrationPoints": [1, 2],
                     "data": [[100, 0, 0, 0, 0, 0], [200, 0, 0, 0, 0, 0]]},
                    # Shell at two section points.
                    {"instance": "PART-1", "elementType": "S4R",
                     "position": "INTEGRATION_POINT", "elementLabels": [7],
                     "integrationPoints": [1], "sectionPoint": [1, "bottom"],
                     "data": [[-10, 0, 0, 0, 0, 0]]},
                    {"instance": "PART-1", "elementType": "S4R",
                     "position": "INTEGRATION_POINT", "elementLabels": [7],
                     "integrationPoints": [1], "sectionPoint": [5, "top"],
                     "data": [[10, 0, 0, 0, 0, 0]]}]}]},
            {"value": 1.0, "fieldOutputs": [
                {"name": "U", "type": "VECTOR", "componentLabels": ["U1", "U2", "U3"],
                 "blocks": [{"instance": "PART-1", "position": "NODAL",
                             "nodeLabels": node_labels, "data": u_rows(2)}]}]}]},
        {"name": "Modes", "domain": "FREQUENCY", "procedure": "*FREQUENCY", "totalTime": 1.0,
         "frames": [{"value": 12.5, "mode": 1, "frequency": 12.5, "fieldOutputs": []}]},
    ],
}

odb = os.path.join(work, "cells.odb")
desc = os.path.join(work, "cells.json")
with open(desc, "w") as f:
    json.dump(description, f)
subprocess.run([odb_build, desc, odb], check=True)
pvd = os.path.join(work, "cells.pvd")
subprocess.run([odb_export, odb, pvd, "--integration-points"], check=True)

failures = []


def check(ok, what):
    if not ok:
        failures.append(what)
        print("FAIL:", what)


def close(a, b, tol=1e-4):
    return abs(a - b) <= tol * max(1.0, abs(b))


# The collection: three frames at 0.5, 1 (time domain) and 2 (one after, frequency step).
sets = ET.parse(pvd).getroot().find("Collection").findall("DataSet")
times = [float(d.get("timestep")) for d in sets]
check(times == [0.5, 1.0, 2.0], "times %s" % times)


def read(i):
    r = vtk.vtkXMLUnstructuredGridReader()
    r.SetFileName(os.path.join(work, sets[i].get("file")))
    r.Update()
    return r.GetOutput()


g = read(0)
check(g.GetNumberOfPoints() == len(nodes), "points %d" % g.GetNumberOfPoints())
check(g.GetNumberOfCells() == len(ELEMENTS), "cells %d" % g.GetNumberOfCells())
pd, cd = g.GetPointData(), g.GetCellData()
label_of_cell = {int(cd.GetArray("element_label").GetValue(c)): c
                 for c in range(g.GetNumberOfCells())}


def sub(a, b):
    return [a[k] - b[k] for k in range(3)]


def cross(a, b):
    return [a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]]


def dot(a, b):
    return sum(a[k] * b[k] for k in range(3))


for label, etype, coords, vtk_type in ELEMENTS:
    cell = g.GetCell(label_of_cell[label])
    check(cell.GetCellType() == vtk_type, "%s: VTK type %d" % (etype, cell.GetCellType()))
    pts = [cell.GetPoints().GetPoint(k) for k in range(cell.GetNumberOfPoints())]
    centre = [sum(p[k] for p in pts) / len(pts) for k in range(3)]
    for f in range(cell.GetNumberOfFaces()):
        face = cell.GetFace(f)
        fp = [face.GetPoints().GetPoint(k) for k in range(3)]
        normal = cross(sub(fp[1], fp[0]), sub(fp[2], fp[0]))
        check(dot(normal, sub(fp[0], centre)) > 0, "%s: face %d points inwards" % (etype, f))
    # Quadratic edges are (end, end, middle) in VTK.
    edges = [cell.GetEdge(e) for e in range(cell.GetNumberOfEdges())]
    if vtk_type == vtk.VTK_QUADRATIC_EDGE:
        edges = [cell]
    for e, edge in enumerate(edges):
        if edge.GetNumberOfPoints() != 3:
            continue
        a, b, m = (edge.GetPoints().GetPoint(k) for k in range(3))
        check(all(close((a[k] + b[k]) / 2, m[k]) for k in range(3)),
              "%s: edge %d midside node off the middle" % (etype, e))
    if cell.GetCellDimension() == 2:
        # Corners in order around the polygon: the shoelace area is the element's area.
        n = 4 if vtk_type in (vtk.VTK_QUAD, vtk.VTK_QUADRATIC_QUAD) else 3
        area = sum(pts[k][0] * pts[(k + 1) % n][1] - pts[(k + 1) % n][0] * pts[k][1]
                   for k in range(n)) / 2
        check(close(area, 1.0 if n == 4 else 0.5), "%s: corner order (area %g)" % (etype, area))

# U at the points: (label, -label, 0.5) in frame 1, (2 label, -2 label, 0.5) in frame 2.
for frame, scale in ((0, 1), (1, 2)):
    gf = read(frame)
    u, lab = gf.GetPointData().GetArray("U"), gf.GetPointData().GetArray("node_label")
    check(u is not None and u.GetNumberOfComponents() == 3, "U array in frame %d" % frame)
    if u is not None:
        bad = [p for p in range(gf.GetNumberOfPoints())
               if u.GetTuple3(p) != (scale * lab.GetValue(p), -scale * lab.GetValue(p), 0.5)]
        check(not bad, "U values differ at %d points of frame %d" % (len(bad), frame))
        check(u.GetComponentName(0) == "U1", "U component names")

s = cd.GetArray("S")
mises = cd.GetArray("S Mises (derived)")
principal = cd.GetArray("S Principal (derived)")
check(s is not None and mises is not None and principal is not None, "S arrays")
if s is not None and mises is not None and principal is not None:
    # The derived values themselves: tests/tools/derived_values_test.cpp.
    hex_cell = label_of_cell[1]
    check(s.GetComponent(hex_cell, 0) == 150.0, "S11 mean of the hex")
    check(close(mises.GetValue(hex_cell), 150.0), "Mises of uniaxial 150")
    check(all(close(a, b) for a, b in zip(principal.GetTuple3(hex_cell), (150, 0, 0))),
          "principal values of the hex %s" % (principal.GetTuple3(hex_cell),))
    check(math.isnan(s.GetComponent(label_of_cell[2], 0)), "no S at the C3D20R: NaN")
ip = cd.GetArray("S@ip")
check(ip is not None and ip.GetNumberOfComponents() == 12, "S@ip with 2 points x 6")
if ip is not None:
    check(ip.GetComponent(label_of_cell[1], 6) == 200.0, "S11 at point 2 of the hex")
    check(ip.GetComponentName(6) == "ip2 S11", "S@ip component names")
sp1, sp5 = cd.GetArray("S@sp1"), cd.GetArray("S@sp5")
check(sp1 is not None and sp5 is not None, "section point arrays")
if sp1 is not None and sp5 is not None:
    check(sp1.GetComponent(label_of_cell[7], 0) == -10.0, "S11 at section point 1")
    check(sp5.GetComponent(label_of_cell[7], 0) == 10.0, "S11 at section point 5")

nset, elset = pd.GetArray("nset HEX_NODES"), cd.GetArray("elset SHELLS")
check(nset is not None and sum(nset.GetValue(p) for p in range(g.GetNumberOfPoints())) == 8,
      "node set array")
check(elset is not None and [c for c in range(g.GetNumberOfCells()) if elset.GetValue(c)] ==
      sorted([label_of_cell[7], label_of_cell[8]]), "element set array")
check(g.GetFieldData().GetArray("TimeValue").GetValue(0) == 0.5, "TimeValue field data")

if failures:
    sys.exit("%d checks failed" % len(failures))
print("export read back by VTK %s: all checks passed" % vtk.vtkVersion.GetVTKVersion())
