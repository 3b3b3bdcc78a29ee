// What the pages here say of their ids.
declare namespace hbbtv {
  interface ElementsById {
    declared: OipfElements["application/oipfApplicationManager"];
  }
}
