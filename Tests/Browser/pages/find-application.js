// Finds the owner application in the ways that pages do, within one task. window.found tells, way by way,
// whether it was an application that can be used.
window.found = (() => {
  const root = document.getElementById("root");

  function usable(manager) {
    const application = manager.getOwnerApplication(document);
    return Boolean(application) && application.privateData.keyset.value === 0;
  }

  function withInnerHtml() {
    root.innerHTML = '<object id="inner" type="application/oipfApplicationManager"></object>';
    return usable(document.getElementById("inner"));
  }

  function withAppendChild() {
    const object = document.createElement("object");
    object.setAttribute("type", "application/oipfApplicationManager");
    root.appendChild(object);
    return usable(object);
  }

  function beforeInsertion() {
    const object = document.createElement("object");
    object.type = "application/oipfApplicationManager";
    const result = usable(object);
    root.appendChild(object);
    return result && object.getOwnerApplication() !== null;
  }

  return {
    markup: usable(document.getElementById("manager")),
    innerHtml: withInnerHtml(),
    appendChild: withAppendChild(),
    beforeInsertion: beforeInsertion(),
    factory: usable(window.oipfObjectFactory.createApplicationManagerObject())
  };
})();
