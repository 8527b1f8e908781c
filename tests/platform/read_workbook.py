#!/usr/bin/env python3
"""Prints what an independent reader finds in a workbook as JSON.

    tests/platform/read_workbook.py FILE.xls|FILE.xlsx

A list of sheets: {"name", "rows", "formats", "boldHeads", "frozenRows", "widths"}. A cell is null, a text, a number,
{"date": "YYYY-MM-DDTHH:MM:SS"}, {"time": "HH:MM:SS"} or {"formula": text}. Empty cells at the end of a row and empty
rows at the end of a sheet are left out. "formats" are those of the second row's cells.
"""

import datetime
import json
import sys

try:
    import openpyxl
    import xlrd
    from openpyxl.utils.escape import unescape
except ImportError:
    sys.exit(99)  # this Python will not do


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
        for sheet in book.sheets():

            def value(cell):
                if cell.ctype == xlrd.XL_CELL_EMPTY:
                    return None
                if cell.ctype == xlrd.XL_CELL_DATE:
                    date = xlrd.xldate_as_datetime(cell.value, book.datemode)
                    return moment(date.time() if cell.value < 1 else date)
                assert cell.ctype in (xlrd.XL_CELL_TEXT, xlrd.XL_CELL_NUMBER), cell
                return cell.value

            def look(row, column):
                return book.xf_list[sheet.cell_xf_index(row, column)]

            columns = range(sheet.ncols)
            yield {
                "name": sheet.name,
                "rows": [without_empty_end([value(cell) for cell in row]) for row in sheet.get_rows()],
                "formats": [book.format_map[look(1, c).format_key].format_str for c in columns]
                if sheet.nrows > 1
                else [],
                "boldHeads": all(book.font_list[look(0, c).font_index].weight == 700 for c in columns),
                "frozenRows": sheet.horz_split_pos if sheet.panes_are_frozen else 0,
                "widths": [sheet.colinfo_map[c].width // 256 for c in columns],
            }


def xlsx_sheets(path):
    for sheet in openpyxl.load_workbook(path).worksheets:

        def value(cell):
            if cell.data_type == "f":
                return {"formula": cell.value}
            if isinstance(cell.value, str):
                return unescape(cell.value)  # which the reader leaves out for texts that stand in their cells
            return moment(cell.value) if cell.is_date and cell.value is not None else cell.value

        rows = list(sheet.rows)
        yield {
            "name": sheet.title,
            "rows": [without_empty_end([value(cell) for cell in row]) for row in rows],
            "formats": [cell.number_format for cell in rows[1]] if len(rows) > 1 else [],
            "boldHeads": all(cell.font.b for cell in rows[0]) if rows else True,
            "frozenRows": int(sheet.freeze_panes[1:]) - 1 if sheet.freeze_panes else 0,
            "widths": [int(sheet.column_dimensions[cell.column_letter].width) for cell in rows[0]] if rows else [],
        }


def main(path):
    sheets = list(xls_sheets(path) if path.endswith(".xls") else xlsx_sheets(path))
    for sheet in sheets:
        without_empty_end(sheet["rows"])
    json.dump(sheets, sys.stdout)


if __name__ == "__main__":
    main(sys.argv[1])
