// Waiting for a fact instead of for a while.
import { setTimeout as pause } from "node:timers/promises";

// How many times longer than usual everything may take: in programs that are built with a sanitizer.
export const slowness = process.env.HBBTV_SANITIZER ? 5 : 1;

// Resolves with the first truthy answer of the predicate; rejects, naming what was waited for and what the
// predicate answered last, when none comes in time.
export async function waitFor(what, predicate, timeoutMs = 10000) {
  const deadline = Date.now() + timeoutMs * slowness;
  for (;;) {
    const answer = await predicate();
    if (answer)
      return answer;
    if (Date.now() > deadline)
      throw new Error(`Waited ${timeoutMs} ms in vain: ${what} (last answer: ${JSON.stringify(answer)})`);
    await pause(20);
  }
}

// Settles as the promise does, or rejects when that takes too long.
export async function inTime(what, promise, timeoutMs = 60000) {
  let timer;
  const late = new Promise((_, reject) => {
    timer = setTimeout(() => reject(new Error(`Waited ${timeoutMs} ms in vain: ${what}`)), timeoutMs * slowness);
  });
  try {
    return await Promise.race([promise, late]);
  } finally {
    clearTimeout(timer);
  }
}
