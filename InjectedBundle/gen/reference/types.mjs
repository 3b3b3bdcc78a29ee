// What values are to a script: the types of the descriptions in the words of TypeScript, each a list of alternatives.

const WORDS = {
  Boolean: 'boolean', Long: 'number', UnsignedLong: 'number', LongLong: 'number', Double: 'number', String: 'string',
  Bytes: 'string', Any: 'any', Undefined: 'void',
};

// What an `any` stands for where it does not stand for everything: "Class.member" or "Class.member.argument".
export const MEANINGS = {
  'EventListeners.addEventListener.listener': ['(event: Event) => void'],
  'EventListeners.addEventListener.useCapture': ['boolean'],
  'EventListeners.removeEventListener.listener': ['(event: Event) => void'],
  'EventListeners.removeEventListener.useCapture': ['boolean'],
  'ChannelList.getChannelByTriplet.nid': ['number'],
  'Event.target': ['object'],
  'Event.currentTarget': ['object'],
  'Event.srcElement': ['object'],
  'Keyset.setValue.keyCodes': ['number[]'],
  'OipfAVControl.onParentalRatingChange.contentID': ['undefined'],
  'OipfAVControl.onParentalRatingError.contentID': ['undefined'],
  'OipfAVControl.setAttributes.attributes': ['{ [name: string]: string }'],
  'OipfCapabilities.xmlCapabilities': ['Document'],
  'OipfVideoBroadcast.addStreamEventListener.listener': ['(event: StreamEvent) => void'],
  'OipfVideoBroadcast.onParentalRatingChange.contentID': ['undefined'],
  'OipfVideoBroadcast.removeStreamEventListener.listener': ['(event: StreamEvent) => void'],
  'OipfVideoBroadcast.setAttributes.attributes': ['{ [name: string]: string }'],
  'OipfVideoBroadcast.setChannel': ['null'],
};

function wordsOf(type, key) {
  if (type.kind === 'object') return [type.name];
  return type.tag === 'Any' ? MEANINGS[key] ?? ['any'] : [WORDS[type.tag]];
}

// The doc comment says whether a value may be absent, and whether it is then null or undefined: of an attribute
// anywhere, of a method in the sentences that tell what it returns.
function absentIn(text, words) {
  return ['null', 'undefined'].filter((word) => text.includes(`\`${word}\``) && !words.includes(word));
}

const sentencesThatReturn = (doc) =>
  doc.split(/(?<=\.)\s+/).filter((sentence) => /\breturns?\b/i.test(sentence)).join(' ');

export function attributeType(className, { name, type, doc }) {
  const words = wordsOf(type, `${className}.${name}`);
  return [...words, ...absentIn(doc, words)];
}

// An overload may leave it to the others' comments to say when there is no result.
export function resultType(className, form, forms) {
  const words = wordsOf(form.result, `${className}.${form.name}`);
  if (words.includes('void') || words.includes('any')) return words;
  return [...words, ...absentIn(sentencesThatReturn(forms.map(({ doc }) => doc).join(' ')), words)];
}

export function argumentType(className, memberName, { name, type }) {
  const words = wordsOf(type, `${className}.${memberName}.${name}`);
  return type.nullable && !words.includes('any') ? [...words, 'null'] : words;
}

// The forms in which a script may write a call: the comment's lists where it gives some.
export const listsOf = (form) => (form.calls.length ? form.calls : [form.arguments]);

export const isHandler = ({ type }) => type.kind === 'handler';

// The event behind a handler: its names for listeners, and its arguments, null for one that is never fired.
export function eventOf({ name, doc, calls }) {
  const none = /\bwithout arguments\b/.test(doc) ? [] : null;
  const names = [name.slice('on'.length), ...[...doc.matchAll(/\balso as "(\w+)"/g)].map(([, other]) => other)];
  return { names, arguments: calls[0] ?? none };
}

export const eventArgumentType = (className, handler, argument) =>
  [...argumentType(className, handler.name, argument), ...(argument.optional ? ['undefined'] : [])];
