// Internal objects: an object element presents the members of a native object as its own.

const presentations = new WeakMap(); // Element to what is presented on it.

function isMethod(internal, name) {
    return !hasOwn(internal, name) && typeof internal[name] === 'function';
}

function present(element, internal, name) {
    if (isMethod(internal, name)) {
        const ofInternal = internal[name];
        defineVisible(element, name, (...args) => apply(ofInternal, internal, args));
        return;
    }
    defineProperty(element, name, {
        __proto__: null,
        get: () => internal[name],
        set: value => {
            internal[name] = value;
        },
        enumerable: true,
        configurable: true,
    });
}

function isParamOf(element, node) {
    return nodeTypeOf(node) === 1 && localNameOf(node) === 'param' && parentOf(node) === element;
}

function concernsParam(element, mutation) {
    if (mutationType(mutation) !== 'childList') {
        return isParamOf(element, mutationTarget(mutation));
    }
    const nodes = addedNodes(mutation);
    for (let i = 0; i < nodeCount(nodes); ++i) {
        if (isParamOf(element, nodes[i])) {
            return true;
        }
    }
    return false;
}

function announceParams(element) {
    const observer = new MutationObserver(mutations => {
        for (let i = 0; i < mutations.length; ++i) {
            if (concernsParam(element, mutations[i])) {
                dispatch(element, new Event('webkitobjectparamadded', { __proto__: null, bubbles: true }));
                return;
            }
        }
    });
    observeMutations(observer, element, { __proto__: null, childList: true, subtree: true, attributes: true });
    return observer;
}

define(HTMLObjectElement.prototype, 'webkitSetInternalObject', function (internal) {
    const former = mapGet(presentations, this);
    if (former) {
        stopMutations(former.observer);
        for (let i = 0; i < former.names.length; ++i) {
            deleteProperty(this, former.names[i]);
        }
        mapDelete(presentations, this);
    }
    if (internal === null || typeof internal !== 'object') {
        return;
    }
    const names = makeList();
    // Its own and its class's, but nothing that a page may have put on the prototype of all objects.
    for (let holder = internal; holder && holder !== everyObject; holder = getPrototypeOf(holder)) {
        const own = keys(holder);
        for (let i = 0; i < own.length; ++i) {
            present(this, internal, own[i]);
            names[names.length] = own[i];
        }
    }
    mapSet(presentations, this, { names, observer: announceParams(this) });
});
