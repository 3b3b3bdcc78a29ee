// The types of what an HbbTV page finds on a receiver with this bundle. They declare one name, "hbbtv", and touch nothing
// else, so that they go with other declarations of the same globals; hbbtv.d.ts has them and the globals.
//
// Generated from the interface descriptions by "npm run reference"; changes made here are lost.

declare namespace hbbtv {
  /**
   * An `object` element that behaves as its native object. It is an HTMLObjectElement, whose width and height are numbers
   * when it shows a picture: they are read as `any`, because HTML's own are texts, and written as numbers.
   */
  type OipfElement<T> = Omit<T, "width" | "height"> &
    Omit<HTMLObjectElement, Exclude<keyof T | "width" | "height", "addEventListener" | "removeEventListener">> &
    (T extends { width: number } ? OipfElementSize : Pick<HTMLObjectElement, "width" | "height">);

  /** The size of an element that shows a picture, in pixels. */
  interface OipfElementSize {
    get width(): any;
    set width(pixels: number);
    get height(): any;
    set height(pixels: number);
  }

  /**
   * The elements that a page finds by id. A page says in a declaration of its own which it has:
   *   declare namespace hbbtv { interface ElementsById { video: OipfElements["video/broadcast"]; } }
   */
  interface ElementsById {}

