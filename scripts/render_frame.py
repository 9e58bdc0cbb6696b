#!/usr/bin/env python3
"""Renders one frame of an odb_export series to a PNG with VTK, for a person to look at.

usage: render_frame.py SERIES.pvd FIELD OUTPUT.png [FRAME]

FRAME is the position in the series (default: the last frame). The surface of the mesh is
coloured by FIELD (its magnitude for a vector or tensor; point data first, else cell data),
seen from an oblique angle, with a colour bar.
"""
import os
import sys
import xml.etree.ElementTree as ET

import vtk

pvd, field, png = sys.argv[1:4]
sets = ET.parse(pvd).getroot().find("Collection").findall("DataSet")
if not sets:
    sys.exit("render_frame: %s lists no frames" % pvd)
entry = sets[int(sys.argv[4]) if len(sys.argv) > 4 else -1]

reader = vtk.vtkXMLUnstructuredGridReader()
reader.SetFileName(os.path.join(os.path.dirname(pvd), entry.get("file")))
reader.Update()
grid = reader.GetOutput()
on_points = grid.GetPointData().GetArray(field) is not None
array = (grid.GetPointData() if on_points else grid.GetCellData()).GetArray(field)
if array is None:
    sys.exit("render_frame: no array named %s in %s" % (field, entry.get("file")))

surface = vtk.vtkDataSetSurfaceFilter()
surface.SetInputConnection(reader.GetOutputPort())
mapper = vtk.vtkDataSetMapper()
mapper.SetInputConnection(surface.GetOutputPort())
if on_points:
    mapper.SetScalarModeToUsePointFieldData()
else:
    mapper.SetScalarModeToUseCellFieldData()
mapper.SelectColorArray(field)
mapper.ScalarVisibilityOn()
lut = vtk.vtkLookupTable()
lut.SetHueRange(0.667, 0.0)
if array.GetNumberOfComponents() > 1:
    lut.SetVectorModeToMagnitude()
lut.Build()
mapper.SetLookupTable(lut)
mapper.SetScalarRange(array.GetRange(-1 if array.GetNumberOfComponents() > 1 else 0))
mapper.UseLookupTableScalarRangeOff()

actor = vtk.vtkActor()
actor.SetMapper(mapper)
actor.GetProperty().EdgeVisibilityOn()
actor.GetProperty().SetEdgeColor(0.2, 0.2, 0.2)
bar = vtk.vtkScalarBarActor()
bar.SetLookupTable(lut)
bar.SetTitle(field)
bar.SetNumberOfLabels(5)
bar.SetWidth(0.12)

renderer = vtk.vtkRenderer()
renderer.AddActor(actor)
renderer.AddActor2D(bar)
renderer.SetBackground(1, 1, 1)
bar.SetUnconstrainedFontSize(True)
for text in (bar.GetTitleTextProperty(), bar.GetLabelTextProperty()):
    text.SetColor(0, 0, 0)
    text.SetFontSize(14)
    text.ItalicOff()
title = vtk.vtkTextActor()
title.SetInput("%s at time %s" % (field, entry.get("timestep")))
title.GetTextProperty().SetColor(0, 0, 0)
title.GetTextProperty().SetFontSize(14)
title.SetPosition(8, 8)
renderer.AddActor2D(title)
camera = renderer.GetActiveCamera()
camera.Azimuth(35)
camera.Elevation(25)
renderer.ResetCamera()
camera.Zoom(0.9)

window = vtk.vtkRenderWindow()
window.SetOffScreenRendering(1)
window.AddRenderer(renderer)
window.SetSize(640, 400)
window.Render()
image = vtk.vtkWindowToImageFilter()
image.SetInput(window)
image.Update()
writer = vtk.vtkPNGWriter()
writer.SetFileName(png)
writer.SetInputConnection(image.GetOutputPort())
writer.Write()
print("render_frame: wrote %s (%s at time %s)" % (png, field, entry.get("timestep")))
