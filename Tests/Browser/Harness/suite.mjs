// What a suite of tests lives in: it begins before the first test, and is closed after the last one.
import { after, before } from "node:test";
import { PageServer } from "./pages.mjs";
import { Television } from "./television.mjs";
import { Workplace } from "./workplace.mjs";

// Closes the last one first.
export function use(...parts) {
  before(async () => {
    for (const part of parts)
      await part.begin();
  });
  after(async () => {
    for (const part of parts.reverse())
      await part.close();
  });
}

// The options are those of a television's constructor.
export function useTelevision(options) {
  const television = new Television(options);
  use(television);
  return television;
}

// Where a suite starts its own programs, and a server of pages beside it.
export function useWorkplace() {
  const [workplace, server] = [new Workplace(), new PageServer()];
  use(workplace, server);
  return { workplace, server };
}
