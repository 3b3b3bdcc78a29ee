// What an HbbTV page finds on a receiver with this bundle, besides what every browser has.
//
// Name this file in the "files" of a tsconfig.json, or begin a script with
//   /// <reference path="hbbtv.d.ts" />
// It works for plain JavaScript too, with "// @ts-check" and, for elements,
//   var video = /** @type {OipfElement<OipfVideoBroadcast>} */ (document.getElementById("video"));
//
// Generated from the interface descriptions by "npm run reference"; changes made here are lost.

/**
 * An `object` element that behaves as its native object. TypeScript knows the kind of an element that it finds by
 * querySelector('object[type="video/broadcast"]'); say it of any other:
 *   const video = document.getElementById("video") as OipfElement<OipfVideoBroadcast>;
 */
type OipfElement<T> = T & Omit<HTMLObjectElement, Exclude<keyof T, "addEventListener" | "removeEventListener">>;

interface ParentNode {
  querySelector<M extends keyof OipfElements>(selectors: `object[type="${M}"]` | `object[type='${M}']`):
    OipfElements[M] | null;
  querySelectorAll<M extends keyof OipfElements>(selectors: `object[type="${M}"]` | `object[type='${M}']`):
    NodeListOf<OipfElements[M]>;
}

/** Writes a line to the receiver's log and to the debug socket. */
declare function debug(message?: any): null;
