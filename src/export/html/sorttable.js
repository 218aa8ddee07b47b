// Sorts the tables of a saved page when a column header is clicked. The page has this script within
// itself, minified, so that it works wherever the file is opened.
//
// What the page promises: tables to sort have the class "sortable"; the first row of their head is
// the title, the second has the headers. A header may say by a class how its column sorts:
// "sorttable_alpha" as text, "sorttable_numeric" as numbers, "sorttable_nosort" not at all; otherwise
// the values decide. A cell sorts by its attribute "sorttable_customkey" if it has one, else by its
// text. An arrow that a header comes with says how the rows were sorted when the page was saved.
//
// A page of several sources is several documents in one file, so this may run more than once: it
// leaves nothing behind but its two names, and no table is set up twice.

// The name stands first for whoever looks for it; no engine that old is served any more.
var stIsIE = false;

window.sorttable = (function () {
  const arrowIds = { ascending: "sorttable_sortfwdind", descending: "sorttable_sortrevind" };
  const arrowTexts = { ascending: "\u00a0\u25b4", descending: "\u00a0\u25be" };
  const classes = { ascending: "sorttable_sorted", descending: "sorttable_sorted_reverse" };
  const collator = new Intl.Collator();

  function keyText(row, column) {
    const cell = row.cells[column];
    if (!cell) return "";
    const key = cell.getAttribute("sorttable_customkey");
    return (key === null ? cell.textContent : key).trim();
  }

  // A number in any locale's notation, NaN for anything else. Where points and commas both stand, the
  // last is the decimal separator; one that stands alone is, unless it repeats.
  function toNumber(text) {
    const match = /^([-+]?)([\d.,'\s]*\d)(e[-+]?\d+)?\s?%?$/i.exec(text);
    if (!match) return NaN;
    let digits = match[2].replace(/['\s]/g, "");
    const last = Math.max(digits.lastIndexOf("."), digits.lastIndexOf(","));
    if (last >= 0) {
      const isGroup = digits.indexOf(digits[last]) !== last;
      const whole = digits.slice(0, last).replace(/[.,]/g, "");
      digits = whole + (isGroup ? "" : ".") + digits.slice(last + 1);
    }
    return Number(match[1] + digits + (match[3] || ""));
  }

  // Day, month and year as one number that sorts; NaN for anything else. The year is first or last.
  function toDay(text, monthFirst) {
    const match = /^(\d{1,4})[./-](\d{1,2})[./-](\d{1,4})\b/.exec(text);
    if (!match) return NaN;
    const parts = match.slice(1, 4).map(Number);
    const [year, month, day] =
      match[1].length > 2 ? parts : monthFirst ? [parts[2], parts[0], parts[1]] : parts.reverse();
    const clock = /(\d{1,2}):(\d{2})(?::(\d{2}))?/.exec(text) || [0, 0, 0, 0];
    const hours = (Number(clock[1]) % (/[ap]m/i.test(text) ? 12 : 24)) + (/pm/i.test(text) ? 12 : 0);
    return (year * 372 + month * 31 + day) * 86400 + hours * 3600 + clock[2] * 60 + (clock[3] || 0) * 1;
  }

  // The numbers that the texts are, -Infinity for empty ones; null if one is no number.
  function numbersOf(texts, convert) {
    const numbers = texts.map((text) => (text === "" ? -Infinity : convert(text)));
    const isEmpty = numbers.every((number) => number === -Infinity);
    return isEmpty || numbers.some(isNaN) ? null : numbers;
  }

  // The value to compare by for each text.
  function valuesOf(texts, header) {
    if (header.classList.contains("sorttable_alpha")) return texts;
    const orLeast = (number) => (isNaN(number) ? -Infinity : number);
    if (header.classList.contains("sorttable_numeric")) return texts.map((text) => orLeast(toNumber(text)));
    // With a day above 12 in the second place the month comes first.
    const monthFirst = texts.some((text) => /^\d{1,2}[./-](1[3-9]|2\d|3[01])[./-]/.test(text));
    const day = (text) => toDay(text, monthFirst);
    return numbersOf(texts, toNumber) || numbersOf(texts, day) || texts;
  }

  const compareTexts = (a, b) => collator.compare(a, b) || (a < b ? -1 : a > b ? 1 : 0);
  const compareNumbers = (a, b) => (a < b ? -1 : a > b ? 1 : 0);

  function sortBody(body, column, header, descending) {
    const rows = Array.from(body.rows);
    const values = valuesOf(rows.map((row) => keyText(row, column)), header);
    const compare = typeof values[0] === "number" ? compareNumbers : compareTexts;
    const sign = descending ? -1 : 1;
    const order = rows.map((_, index) => index);
    order.sort((a, b) => sign * compare(values[a], values[b]) || a - b);
    put(body, order.map((index) => rows[index]));
  }

  // Rows are moved while their body is out of the page, where a move costs little.
  function put(body, rows) {
    const mark = document.createComment("");
    body.replaceWith(mark);
    rows.forEach((row) => body.appendChild(row));
    mark.replaceWith(body);
  }

  function arrowOf(header, direction) {
    return header.querySelector("#" + arrowIds[direction]);
  }

  function markSorted(headers, header, direction) {
    for (const each of headers) {
      for (const other of ["ascending", "descending"]) {
        each.classList.remove(classes[other]);
        const arrow = arrowOf(each, other);
        if (arrow) arrow.remove();
      }
      each.removeAttribute("aria-sort");
    }
    const arrow = document.createElement("span");
    arrow.id = arrowIds[direction];
    arrow.textContent = arrowTexts[direction];
    header.appendChild(arrow);
    header.classList.add(classes[direction]);
    header.setAttribute("aria-sort", direction);
  }

  function sortBy(table, headers, header) {
    const column = header.cellIndex;
    const isSorted = header.classList.contains(classes.ascending);
    const isReversed = header.classList.contains(classes.descending);
    // Rows that came sorted may be a tree's, sorted level by level: those are really sorted first.
    const direction = isSorted || arrowOf(header, "ascending") ? "descending" : "ascending";
    for (const body of table.tBodies) {
      if (isSorted || isReversed) {
        put(body, Array.from(body.rows).reverse());
      } else {
        sortBody(body, column, header, direction === "descending");
      }
    }
    markSorted(headers, header, direction);
  }

  function makeSortable(table) {
    const headerRow = table.tHead && table.tHead.rows[1];
    if (!headerRow || headerRow.sorttable_isReady) return;
    headerRow.sorttable_isReady = true;
    for (const header of headerRow.cells) {
      if (header.classList.contains("sorttable_nosort")) continue;
      const sort = () => sortBy(table, headerRow.cells, header);
      header.style.cursor = "pointer";
      header.tabIndex = 0;
      for (const direction of ["ascending", "descending"]) {
        if (arrowOf(header, direction)) header.setAttribute("aria-sort", direction);
      }
      // The page's style takes the outline away from everything; who uses the keys needs it.
      header.addEventListener("focus", () => {
        if (header.matches(":focus-visible")) header.style.outline = "1px dotted #666";
      });
      header.addEventListener("blur", () => (header.style.outline = ""));
      header.addEventListener("click", sort);
      header.addEventListener("keydown", (event) => {
        if (event.key !== "Enter" && event.key !== " ") return;
        event.preventDefault();
        sort();
      });
    }
  }

  return {
    init() {
      for (const table of document.querySelectorAll("table.sortable")) makeSortable(table);
    },
  };
})();

window.onload = sorttable.init;
