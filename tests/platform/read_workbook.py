#!/usr/bin/env python3
"""Prints what an independent reader finds in a workbook as JSON.

    tests/platform/read_workbook.py FILE.xls|FILE.xlsx

A list of sheets: {"name", "rows", "formats", "boldHeads", "frozenRows", "widths", "headsOnPages"}. A cell is null, a text, a number,
{"date": "YYYY-MM-DDTHH:MM:SS"}, {"time": "HH:MM:SS"} or {"formula": text}. Empty cells at the end of a row and empty
rows at the end of a sheet are left out. "formats" are those of the second row's cells.
"""

import datetime
import json
import sys

import openpyxl
import xlrd
from openpyxl.utils.escape import unescape


def moment(value):
    if isinstance(value, datetime.time):
        return {"time": value.isoformat(timespec="seconds")}
    rounded = value + datetime.timedelta(microseconds=500000)
    return {"date": rounded.isoformat(timespec="seconds")}


def without_empty_end(values):
    while values and values[-1] in (None, []):
        values.pop()
    return values


def xls_sheets(path):
    with xlrd.open_workbook(path, formatting_info=True) as book:

        def value(cell):
            if cell.ctype == xlrd.XL_CELL_EMPTY:
                return None
            if cell.ctype == xlrd.XL_CELL_DATE:
                date = xlrd.xldate_as_datetime(cell.value, book.datemode)
                return moment(date.time() if cell.value < 1 else date)
            assert cell.ctype in (xlrd.XL_CELL_TEXT, xlrd.XL_CELL_NUMBER), cell
            return cell.value

        for sheet in book.sheets():
            looks = [[book.xf_list[sheet.cell_xf_index(row, c)] for c in range(sheet.ncols)]
                     for row in range(min(sheet.nrows, 2))]
            yield {
                "name": sheet.name,
                "rows": [[value(cell) for cell in row] for row in sheet.get_rows()],
                "formats": [book.format_map[look.format_key].format_str for look in (looks + [[], []])[1]],
                "boldHeads": all(book.font_list[look.font_index].weight == 700 for look in (looks + [[]])[0]),
                "frozenRows": sheet.horz_split_pos if sheet.panes_are_frozen else 0,
                "widths": [sheet.colinfo_map[c].width // 256 for c in range(sheet.ncols)],
                "headsOnPages": any(
                    name.name == "Print_Titles" and name.area2d(clipped=False) == (sheet, 0, 1, 0, 256)
                    for name in book.name_obj_list),
            }


def xlsx_sheets(path):
    def value(cell):
        if cell.data_type == "f":
            return {"formula": cell.value}
        if isinstance(cell.value, str):
            return unescape(cell.value)  # which the reader leaves out for texts that stand in their cells
        return moment(cell.value) if cell.is_date and cell.value is not None else cell.value

    for sheet in openpyxl.load_workbook(path).worksheets:
        heads, second = ([*sheet.rows, [], []])[:2]
        yield {
            "name": sheet.title,
            "rows": [[value(cell) for cell in row] for row in sheet.rows],
            "formats": [cell.number_format for cell in second],
            "boldHeads": all(cell.font.b for cell in heads),
            "frozenRows": int(sheet.freeze_panes[1:]) - 1 if sheet.freeze_panes else 0,
            "widths": [int(sheet.column_dimensions[cell.column_letter].width) for cell in heads],
            "headsOnPages": sheet.print_title_rows == "$1:$1" and sheet.page_setup.fitToHeight == 0,
        }


def sheets_of(path):
    sheets = list(xls_sheets(path) if path.endswith(".xls") else xlsx_sheets(path))
    for sheet in sheets:
        sheet["rows"] = without_empty_end([without_empty_end(row) for row in sheet["rows"]])
    return sheets


if __name__ == "__main__":
    json.dump(sheets_of(sys.argv[1]), sys.stdout)
