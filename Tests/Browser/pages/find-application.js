// Finds the owner application by an element and by the factory. window.found tells the key mask that it has.
window.found = [document.getElementById("manager"), window.oipfObjectFactory.createApplicationManagerObject()]
  .map(manager => manager.getOwnerApplication(document).privateData.keyset.value);
