// The tables that people read: what became of each row under each column.
import { mkdirSync, writeFileSync } from "node:fs";
import { dirname } from "node:path";

export class Matrix {
  #rows = {};

  constructor(columns) {
    this.columns = columns;
  }

  note(row, column, outcome) {
    (this.#rows[row] ??= {})[column] = outcome;
  }

  toString() {
    const line = (name, tell) => `| ${[name, ...this.columns.map(tell)].join(" | ")} |`;
    const outcomes = column => Object.values(this.#rows).flatMap(row => row[column] ?? []);
    const failed = column => outcomes(column).filter(outcome => outcome.startsWith("FAILED")).length;
    return [line("", column => column), line("---", () => "---"),
      ...Object.entries(this.#rows).map(([name, row]) => line(name, column => row[column] ?? "")),
      line("**good**", column => outcomes(column).length - failed(column)), line("**failed**", failed)].join("\n");
  }
}

export function writeTables(file, tables) {
  mkdirSync(dirname(file), { recursive: true });
  writeFileSync(file, Object.entries(tables).map(([title, table]) => `# ${title}\n\n${table}\n`).join("\n"));
}
