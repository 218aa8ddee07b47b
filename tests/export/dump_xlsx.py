#!/usr/bin/python3
"""Prints what a workbook holds: the description, the sheets, the frozen place, and each cell with its type."""

import sys

import openpyxl

workbook = openpyxl.load_workbook(sys.argv[1])
if workbook.properties.description:
    print(f"description {workbook.properties.description!r}")
for sheet in workbook.worksheets:
    print(f"sheet {sheet.title!r} frozen at {sheet.freeze_panes} size {sheet.dimensions}")
    for row in sheet.iter_rows():
        for cell in row:
            if cell.value is None:
                continue
            value = cell.value.isoformat(" ", "seconds") if cell.is_date else repr(cell.value)
            print(f"  {cell.coordinate:5} {'date' if cell.is_date else cell.data_type} {value}")
