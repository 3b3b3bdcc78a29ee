// What an HbbTV page finds on a receiver with this bundle, besides what every browser has.
//
// Name this file in the "files" of a tsconfig.json, or begin a script with
//   /// <reference path="hbbtv.d.ts" />
// It works for plain JavaScript too, with "// @ts-check". Say of elements what they are, unless they are found by their type:
//   const video: hbbtv.OipfElement<hbbtv.OipfVideoBroadcast> | null = document.getElementById("video");
//   /** @type {hbbtv.OipfElement<hbbtv.OipfVideoBroadcast>} */
//   var video = document.getElementById("video");
//
// Generated from the interface descriptions by "npm run reference"; changes made here are lost.

/// <reference path="types.d.ts" />

interface ParentNode {
  querySelector<M extends keyof hbbtv.OipfElements>(selectors: `object[type="${M}"]` | `object[type='${M}']`):
    hbbtv.OipfElements[M] | null;
  querySelectorAll<M extends keyof hbbtv.OipfElements>(selectors: `object[type="${M}"]` | `object[type='${M}']`):
    NodeListOf<hbbtv.OipfElements[M]>;
}

// An element is what the page says of its id, or of the variable, as with querySelector.
interface Document {
  getElementById<I extends keyof hbbtv.ElementsById>(elementId: I): hbbtv.ElementsById[I];
  getElementById<E extends HTMLElement = HTMLElement>(elementId: string): E | null;
  createElement<E extends HTMLElement = HTMLObjectElement>(tagName: "object"): E;
}

/** Makes the objects for pages that do without `object` elements. */
declare var oipfObjectFactory: hbbtv.OipfObjectFactory;
/** Writes a line to the receiver's log and to the debug socket. */
declare function debug(message?: any): null;
