// Attributes and params, those of the beginning and those that change later.

// A width such as "100%" says nothing in pixels; the geometry of the hole covers it.
function _hbbtv_vantrel_attributeValue(name, text) {
  if (name !== "width" && name !== "height")
    return text;
  return _hbbtv_vantrel_kept.match(/^\s*\d+\s*(px\s*)?$/, text)
    ? _hbbtv_vantrel_kept.parseInteger(text, 10) : undefined;
}

function _hbbtv_vantrel_assignAttribute(record, name) {
  const { object, oipf } = record;
  const text = _hbbtv_vantrel_kept.getAttribute(object, name);
  // An attribute named as a handler carries script text, no function.
  if (text === null || !_hbbtv_vantrel_kept.hasOwn(oipf, name) || _hbbtv_vantrel_kept.startsWith(name, "on"))
    return;
  const value = _hbbtv_vantrel_attributeValue(name, text);
  if (value === undefined)
    return;
  if (record.sizes && (name === "width" || name === "height"))
    record.sizes[name] = value;
  else
    _hbbtv_vantrel_assign(oipf, name, value);
}

// A medium's object sends each size at once, to a player that there is not before it plays.
function _hbbtv_vantrel_handOverSizes(record) {
  const { oipf, sizes } = record;
  record.sizes = null;
  for (const name in sizes)
    _hbbtv_vantrel_assign(oipf, name, sizes[name]);
}

function _hbbtv_vantrel_attributeChanged(object, name) {
  const record = _hbbtv_vantrel_find(object);
  if (!record || !record.oipf)
    return;
  const text = _hbbtv_vantrel_kept.getAttribute(object, name);
  if (name !== "type" || _hbbtv_vantrel_pluginOf(object) === record.plugin) {
    // The player that is set up next is told all attributes. Those that change with every frame of an animation
    // mean nothing to it.
    if (record.plugin.visual && name !== "style" && name !== "class" && text !== null)
      record.oipf.setAttributes({ __proto__: null, [name]: text });
    _hbbtv_vantrel_assignAttribute(record, name);
    return;
  }
  _hbbtv_vantrel_finalize(object);
  if (_hbbtv_vantrel_pluginOf(object))
    _hbbtv_vantrel_initialize_old(object);
}

// Takes what a MutationSummary of { all: true } reports: `attributeChanged`, attribute to elements, and `added`.
function _hbbtv_vantrel_notify_attributes(matches) {
  for (let i = 0; i < matches.length; ++i) {
    const { attributeChanged, added } = matches[i];
    for (const name in attributeChanged) {
      for (let j = 0; j < attributeChanged[name].length; ++j)
        _hbbtv_vantrel_attempt(() => _hbbtv_vantrel_attributeChanged(attributeChanged[name][j], name));
    }
    _hbbtv_vantrel_attempt(() => _hbbtv_vantrel_paramsAdded(added));
  }
}

function _hbbtv_vantrel_paramsAdded(added) {
  const params = { __proto__: null };
  let record;
  for (let i = 0; i < added.length; ++i) {
    record = _hbbtv_vantrel_find(_hbbtv_vantrel_kept.parentNode(added[i]));
    _hbbtv_vantrel_readParam(added[i], params);
  }
  if (record && record.oipf && record.plugin.visual)
    record.oipf.setAttributes(params);
}

// As a MutationSummary of the element would say it, which a page can break: what is as it was is not reported.
function _hbbtv_vantrel_summarise(object, mutations) {
  const before = { __proto__: null };
  const summary = { attributeChanged: { __proto__: null }, added: _hbbtv_vantrel_list() };
  for (let i = 0; i < mutations.length; ++i) {
    if (_hbbtv_vantrel_kept.mutationType(mutations[i]) === "attributes") {
      const name = _hbbtv_vantrel_kept.mutatedAttribute(mutations[i]);
      if (before[name] === undefined)
        before[name] = _hbbtv_vantrel_kept.oldValue(mutations[i]);
      continue;
    }
    const nodes = _hbbtv_vantrel_kept.addedNodes(mutations[i]);
    for (let j = 0; j < _hbbtv_vantrel_kept.nodeCount(nodes); ++j) {
      if (_hbbtv_vantrel_isElement(nodes[j], "param") && _hbbtv_vantrel_kept.parentNode(nodes[j]) === object)
        _hbbtv_vantrel_append(summary.added, nodes[j]);
    }
  }
  for (const name in before) {
    if (_hbbtv_vantrel_kept.getAttribute(object, name) !== before[name])
      summary.attributeChanged[name] = [object];
  }
  return summary;
}

// Of all elements.
var _hbbtv_vantrel_markupObserver = null;

function _hbbtv_vantrel_watch(record) {
  if (!_hbbtv_vantrel_markupObserver)
    _hbbtv_vantrel_markupObserver = _hbbtv_vantrel_newObserver(_hbbtv_vantrel_markupChanged);
  _hbbtv_vantrel_kept.observe(_hbbtv_vantrel_markupObserver, record.object,
    { __proto__: null, attributes: true, attributeOldValue: true, childList: true });
}

function _hbbtv_vantrel_markupChanged(mutations) {
  if (mutations.length === 0)
    return;
  const changed = _hbbtv_vantrel_list();
  for (let i = 0; i < mutations.length; ++i) {
    const record = _hbbtv_vantrel_find(_hbbtv_vantrel_kept.mutationTarget(mutations[i]));
    if (!record || !record.oipf)
      continue;
    if (!record.mutations) {
      record.mutations = _hbbtv_vantrel_list();
      _hbbtv_vantrel_append(changed, record);
    }
    _hbbtv_vantrel_append(record.mutations, mutations[i]);
  }
  for (let i = 0; i < changed.length; ++i)
    _hbbtv_vantrel_applyMarkup(changed[i]);
}

function _hbbtv_vantrel_applyMarkup(record) {
  const { mutations } = record;
  if (!mutations)
    return;
  record.mutations = null;
  _hbbtv_vantrel_attempt(() => {
    _hbbtv_vantrel_notify_attributes([_hbbtv_vantrel_summarise(record.object, mutations)]);
    _hbbtv_vantrel_restore(record);
  });
}

// Observers run at the end of the task; the page may call the object on the line after setAttribute.
function _hbbtv_vantrel_flush(record) {
  if (_hbbtv_vantrel_markupObserver)
    _hbbtv_vantrel_markupChanged(_hbbtv_vantrel_kept.takeMutations(_hbbtv_vantrel_markupObserver));
  _hbbtv_vantrel_applyMarkup(record);
}
