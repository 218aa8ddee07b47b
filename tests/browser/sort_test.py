#!/usr/bin/python3
"""Sorts saved pages in a real browser, as their readers do.

sort_test.py PROGRAM [unittest arguments]
"""

import base64
import hashlib
import json
import os
import re
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

PROGRAM = None

# Runs the steps and writes their results into the title. A step is [table, column, action].
DRIVER = """
<script>
window.addEventListener("load", () => {
  const tables = [...document.querySelectorAll("table.sortable")];
  const results = STEPS.map(([table, column, action]) => {
    const header = tables[table].tHead.rows[1].cells[column];
    const begin = performance.now();
    if (action === "click") header.click();
    else if (action) header.dispatchEvent(new KeyboardEvent("keydown", { key: action }));
    const rows = [...tables[table].tBodies[0].rows];
    const arrows = [...tables[table].querySelectorAll("[id^=sorttable_sort]")];
    return {
      order: rows.slice(0, 20).map((row) => row.cells[0].textContent),
      arrows: arrows.map((arrow) => [arrow.parentElement.cellIndex, arrow.id.slice(14, 17)]),
      sorted: header.getAttribute("aria-sort"),
      milliseconds: performance.now() - begin,
    };
  });
  const out = document.createElement("pre");
  out.id = "results";
  out.textContent = JSON.stringify({ results, tables: tables.length, focusable: tables.length &&
    tables[0].tHead.rows[1].cells[0].tabIndex === 0 });
  document.body.replaceChildren(out);
});
</script>
"""


def page_with_rows(script, headers, rows):
    """A page as reports have it; a row is a list of cells, a cell its text or [key, text]."""
    cell = lambda c: f"<td>{c}</td>" if isinstance(c, str) else f"<td sorttable_customkey='{c[0]}'>{c[1]}</td>"
    body = "".join("<tr>" + "".join(map(cell, row)) + "</tr>" for row in rows)
    return (
        f"<!DOCTYPE html><html><head>{script}</head><body><table class='sortable'><thead>"
        f"<tr><th colspan='{len(headers)}'>Title</th></tr><tr>{''.join(headers)}</tr></thead>"
        f"<tbody>{body}</tbody></table></body></html>"
    )


class SortTest(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.work = Path(folder.name)

    def save(self, *arguments):
        """Runs the program where its texts are English and no settings are stored."""
        environment = dict(os.environ, LC_ALL="C.UTF-8", XDG_CONFIG_HOME=str(self.work / "config"))
        environment.pop("LANGUAGE", None)
        subprocess.run([PROGRAM, *arguments], check=True, stdout=subprocess.DEVNULL, env=environment)

    def browse(self, page, steps):
        """What the driver tells after the steps."""
        target = self.work / "page.html"
        driver = DRIVER.replace("STEPS", json.dumps(steps))
        # A report lets no script run but its own, so the driver has to be allowed.
        script = re.search(r"<script[^>]*>(.*?)</script>", driver, re.DOTALL)[1]
        digest = base64.b64encode(hashlib.sha256(script.encode()).digest()).decode()
        page = page.replace("script-src ", f"script-src 'sha256-{digest}' ")
        target.write_bytes(b"\xff\xfe" + (page + driver).encode("utf-16-le", "surrogatepass"))
        # The output is not a pipe, because processes that outlive the browser would keep it open.
        with open(self.work / "dom", "wb") as out:
            subprocess.run(
                ["chromium", "--headless", "--no-sandbox", "--disable-gpu", "--disable-dev-shm-usage",
                 f"--user-data-dir={self.work / 'browser'}", "--dump-dom", target.as_uri()],
                check=True, stdin=subprocess.DEVNULL, stdout=out, stderr=subprocess.DEVNULL, timeout=240,
            )
        dom = (self.work / "dom").read_text()
        found = re.search(r'<pre id="results">(.*?)</pre>', dom, re.DOTALL)
        self.assertIsNotNone(found, "the page's script did not run")
        text = found[1].replace("&lt;", "<").replace("&gt;", ">").replace("&amp;", "&")
        return json.loads(text)

    def read_page(self, name):
        data = (self.work / name).read_bytes()
        self.assertEqual(data[:2], b"\xff\xfe")
        return data[2:].decode("utf-16-le", "surrogatepass")

    def make_tree(self, name):
        """Folders whose order differs by name, size, percent and date."""
        folders = [("Zebra", 9, 4e8), ("ant", 1000, 3e8), ("Bee", 2_000_000, 1e8), ("\u00e4hre", 0, 2e8)]
        for folder, size, date in folders:
            path = self.work / name / folder
            path.mkdir(parents=True)
            if size:
                with open(path / "file", "wb") as file:
                    file.truncate(size)
            os.utime(path, (date, date))
        return str(self.work / name)

    def settings(self, text):
        folder = self.work / "config" / "Ombrelian"
        folder.mkdir(parents=True)
        (folder / "Ombrelian3.ini").write_bytes(b"\xff\xfe" + text.encode("utf-16-le"))

    def test_saved_report_sorts_by_every_kind_of_column(self):
        self.settings("[Optionen]\r\nFolderColumnVisible3=1\r\nFolderColumnVisible8=1\r\n")
        trees = [self.make_tree("one"), self.make_tree("two")]
        self.save("-s", str(self.work / "report.html"), *trees)
        name, size, percent, date = range(4)
        wanted = {
            name: ["\u00e4hre", "ant", "Bee", "Zebra"],
            size: ["\u00e4hre", "Zebra", "ant", "Bee"],
            percent: ["\u00e4hre", "Zebra", "ant", "Bee"],
            date: ["Bee", "\u00e4hre", "ant", "Zebra"],
        }
        steps = [[1, column, "click"] for column in wanted for _ in range(2)] + [[0, name, None]]
        told = self.browse(self.read_page("report.html"), steps)
        self.assertEqual(told["tables"], 2)
        untouched = told["results"].pop()
        self.assertEqual(untouched["order"][0], trees[0])
        self.assertEqual(untouched["arrows"], [])
        for step, result in zip(steps, told["results"]):
            column = step[1]
            order = [row.rsplit("/", 1)[1] for row in result["order"] if row != trees[1]]
            is_first = result["sorted"] == "ascending"
            expected = wanted[column] if is_first else wanted[column][::-1]
            if column == percent:  # 0.00% for two: equals keep the order they had
                order, expected = order[2:] if is_first else order[:2], expected[2:] if is_first else expected[:2]
            if column == name:  # the browser's own language decides where the umlaut stands
                order, expected = ([n for n in names if n != "\u00e4hre"] for names in (order, expected))
            self.assertEqual(order, expected, step)
            self.assertEqual(result["arrows"], [[column, "fwd" if is_first else "rev"]])
        directions = [result["sorted"] for result in told["results"]]
        self.assertEqual(directions, ["ascending", "descending"] * 4)

    def test_saved_list_opens_with_its_arrow(self):
        self.save("--lists", "--save", str(self.work / "out"), "--format", "html", self.make_tree("tree"))
        page = self.read_page("out/extensions.html")
        told = self.browse(page, [[0, 1, None], [0, 1, "click"], [0, 0, "click"]])["results"]
        self.assertEqual(told[0]["arrows"], [[1, "rev"]])
        self.assertEqual(told[0]["sorted"], "descending")
        self.assertEqual(told[1]["arrows"], [[1, "fwd"]])
        self.assertEqual(told[2]["arrows"], [[0, "fwd"]])

    def script(self):
        self.save("-s", str(self.work / "empty.html"), self.make_tree("for-script"))
        return re.search(r"<script .*?</script>", self.read_page("empty.html"))[0]

    def test_values_decide_how_a_column_sorts(self):
        headers = ["<th>Id</th>", "<th>N</th>", "<th class='sorttable_alpha'>T</th>", "<th>D</th>",
                   "<th class='sorttable_nosort'>X</th>", "<th>I</th>"]
        rows = [
            ["a", "12,5%", "10", "31.12.2024 10:00", "2", "2024-02-01 09:00"],
            ["b", "-3", "9", "01.01.2025", "1", "2024-01-31 23:00"],
            ["c", "", "", "31.12.2024 09:59", "3", ""],
            ["d", "1.234.567", "1", "", "4", "2024-02-01 08:00"],
            ["e", ["7", "nine"], "9", "02.01.2025", "5", "2025-01-01"],
        ]
        steps = [[0, 1, "Enter"], [0, 1, " "], [0, 2, "click"], [0, 2, "click"], [0, 3, "click"],
                 [0, 4, "click"], [0, 5, "click"], [0, 5, "x"]]
        told = self.browse(page_with_rows(self.script(), headers, rows), steps)
        self.assertTrue(told["focusable"])
        orders = ["".join(result["order"]) for result in told["results"]]
        # "b" and "e" are equal as texts and keep the order of the previous sort.
        expected = ["cbead", "daebc", "cdaeb", "beadc", "dcabe", "dcabe", "cbdae", "cbdae"]
        self.assertEqual(orders, expected)

    def test_a_hundred_thousand_rows(self):
        rows = [[str(i), [str(i * 7919 % 100003), "x"]] + ["cell"] * 8 for i in range(100_000)]
        headers = ["<th>C</th>"] * 10
        page = page_with_rows(self.script(), headers, rows)
        page = page.replace("<body>", "<body style='display:none'>")  # laying it out takes a minute
        told = self.browse(page, [[0, 1, "click"], [0, 1, "click"]])
        first, second = told["results"]
        print(f"100,000 rows: {first['milliseconds']:.0f} ms, reversed {second['milliseconds']:.0f} ms")
        by_key = sorted(rows, key=lambda row: int(row[1][0]))
        self.assertEqual(first["order"], [row[0] for row in by_key[:20]])
        self.assertEqual(second["order"], [row[0] for row in by_key[:-21:-1]])


if __name__ == "__main__":
    PROGRAM = os.path.abspath(sys.argv.pop(1))
    unittest.main()
