// A page whose names, and whose declarations of the globals, are its own.

declare namespace Other { interface Factory { createVideoBroadcastObject(): HTMLObjectElement; } }
declare var oipfObjectFactory: Other.Factory;
declare function debug(text: string): void;
interface Channel { readonly number: string; }
class Query { constructor(readonly text: string) {} }
const Keyset = { RED: 1 };

const shown: Channel = { number: new Query("one").text + Keyset.RED };
const receiver = oipfObjectFactory.createVideoBroadcastObject() as hbbtv.OipfElement<hbbtv.OipfVideoBroadcast>;
debug(receiver.currentChannel?.name ?? shown.number);
