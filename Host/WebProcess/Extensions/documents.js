// Documents of HbbTV's own type. WebKit parses them as XML of no particular kind, in which new elements
// belong to no namespace; to a television they are XHTML.
const xhtml = 'http://www.w3.org/1999/xhtml';
const applicationType = 'application/vnd.hbbtv.xhtml+xml';
if (document.contentType === applicationType) {
    const { createElement, createElementNS } = Document.prototype;
    defineVisible(Document.prototype, 'createElement', function (name, options) {
        return contentTypeOf(this) === applicationType
            ? apply(createElementNS, this, [xhtml, name, options])
            : apply(createElement, this, [name, options]);
    });
}

// WebKit puts what is not well-formed on the screen alone, and there a style may hide it.
if (document.contentType !== 'text/html') {
    const { console: { error: tell }, document: { URL: address } } = window;
    const find = method('Document', 'querySelector');
    const textOf = getter('Node', 'textContent');
    const trim = method('String', 'trim');
    addListener(document, 'DOMContentLoaded', () => {
        const fault = find(document, 'parsererror > div');
        if (fault)
            tell(address + ' is not well-formed: ' + trim(textOf(fault)));
    });
}
