// Draws the pictures of #data, and shows what belongs to their parts. Texts of the data enter the
// document as text nodes alone.
(() => {
  'use strict';
  const pictures = JSON.parse(document.getElementById('data').textContent);
  const byId = (id) => document.getElementById(id);
  const view = byId('view');
  const scene = byId('scene');
  const lineClasses = ['', 'one-sided', 'virtual', 'multipoint'];
  const partNames = ['router', 'network', 'stub'];
  const smallest = 0.01;
  const largest = 8;
  let picture = null;
  let shown = new Set();  // places of areas
  let place = { x: 0, y: 0, scale: 1 };
  let chosen = null;

  function element(name, attributes = {}, text = null) {
    const made = document.createElementNS(view.namespaceURI, name);
    for (const [key, value] of Object.entries(attributes)) made.setAttribute(key, value);
    if (text !== null) made.textContent = text;
    return made;
  }

  function html(name, text = null, attributes = {}) {
    const made = document.createElement(name);
    for (const [key, value] of Object.entries(attributes)) made.setAttribute(key, value);
    if (text !== null) made.textContent = text;
    return made;
  }

  function button(text, act) {
    const made = html('button', text, { type: 'button' });
    made.addEventListener('click', act);
    return made;
  }

  function itemOf(content) {
    const made = html('li');
    made.append(...[].concat(content));
    return made;
  }

  function tint(what, colour) {
    what.classList.add('tinted');
    what.style.setProperty('--c', colour);
    return what;
  }

  const colourOf = (area, change) =>
    picture.difference ? picture.changes[change] : picture.areas[area].colour;

  // --- drawing -------------------------------------------------------------------------------------

  // Points of an edge's curves, close enough for distances.
  function outline(edge) {
    if (edge.outline) return edge.outline;
    const p = edge.points;
    const steps = p.length > 8 ? 6 : 1;
    const all = [[p[0], p[1]]];
    for (let at = 0; at + 7 < p.length; at += 6) {
      for (let step = 1; step <= steps; ++step) {
        const t = step / steps;
        const u = 1 - t;
        const mix = (axis) => u * u * u * p[at + axis] + 3 * u * u * t * p[at + 2 + axis] +
          3 * u * t * t * p[at + 4 + axis] + t * t * t * p[at + 6 + axis];
        all.push([mix(0), mix(1)]);
      }
    }
    edge.outline = all;
    return all;
  }

  function lengthOf(points) {
    let length = 0;
    for (let at = 1; at < points.length; ++at) {
      length += Math.hypot(points[at][0] - points[at - 1][0], points[at][1] - points[at - 1][1]);
    }
    return length;
  }

  // The point so far along a line of points.
  function along(points, distance) {
    for (let at = 1; at < points.length; ++at) {
      const [x0, y0] = points[at - 1];
      const [x1, y1] = points[at];
      const length = Math.hypot(x1 - x0, y1 - y0);
      if (distance <= length && length > 0) {
        const t = distance / length;
        return [x0 + (x1 - x0) * t, y0 + (y1 - y0) * t];
      }
      distance -= length;
    }
    return points[points.length - 1];
  }

  function pathOf(edge) {
    const p = edge.points;
    let text = `M${p[0]} ${p[1]}`;
    for (let at = 2; at + 5 < p.length; at += 6) text += `C${p.slice(at, at + 6).join(' ')}`;
    return text;
  }

  function drawEdge(edge) {
    const group = element('g', { class: `edge ${lineClasses[edge.line]}` });
    if (edge.change) group.classList.add('changed');
    if (edge.way) group.classList.add('way');
    const path = pathOf(edge);
    group.append(element('path', { d: path }));
    if (lineClasses[edge.line] === 'multipoint') group.append(element('path', { d: path, class: 'core' }));
    edge.group = group;
    return group;
  }

  // Boxes that are taken, found again by the cells that they lie in.
  function takenRoom(cell) {
    const cells = new Map();
    const keysOf = ([left, top, right, bottom]) => {
      const keys = [];
      for (let x = Math.floor(left / cell); x <= Math.floor(right / cell); ++x) {
        for (let y = Math.floor(top / cell); y <= Math.floor(bottom / cell); ++y) keys.push(`${x},${y}`);
      }
      return keys;
    };
    const meet = (a, b) => a[0] < b[2] && b[0] < a[2] && a[1] < b[3] && b[1] < a[3];
    return {
      take: (box) => keysOf(box).forEach((key) => cells.set(key, [...(cells.get(key) || []), box])),
      isFree: (box) => keysOf(box).every((key) => !(cells.get(key) || []).some((each) => meet(box, each))),
    };
  }

  // A text on its line where there is room for it, as near to the first place as can be. One without
  // room is shown when its line is chosen.
  function placeText(edge, text, kind, points, first, room) {
    const size = picture.fonts.cost;
    const width = (text.length + 0.4) * size * 0.62;
    const last = Math.max(first, lengthOf(points) * 0.47);
    let at = null;
    for (let distance = first; distance <= last && !at; distance += size * 0.6) {
      const [x, y] = along(points, distance);
      const box = [x - width / 2, y - size * 0.55, x + width / 2, y + size * 0.55];
      if (!room.isFree(box)) continue;
      room.take(box);
      at = [x, y];
    }
    const [x, y] = at || along(points, first);
    const made = element('text', { x, y, class: kind, 'font-size': size }, text);
    if (!at) made.classList.add('crowded');
    edge.texts.append(made);
  }

  // Above all lines, the costs before the addresses, which are shown when asked for.
  function drawTexts(edges) {
    const size = picture.fonts.cost;
    const room = takenRoom(size * 4);
    for (const { x, y, width, height } of picture.nodes) {
      room.take([x - width / 2, y - height / 2, x + width / 2, y + height / 2]);
    }
    const atEnds = (edge, texts, kind, from, part) => {
      const points = outline(edge);
      const first = Math.min(size * from, lengthOf(points) * part);
      if (texts[0]) placeText(edge, texts[0], kind, points, first, room);
      if (texts[1]) placeText(edge, texts[1], kind, points.slice().reverse(), first, room);
    };
    for (const edge of edges) {
      edge.texts = element('g', { class: edge.group.getAttribute('class') });
      if (!edge.label) continue;
      const points = outline(edge);
      placeText(edge, edge.label, 'label', points, lengthOf(points) / 2, room);
    }
    for (const edge of edges) atEnds(edge, edge.costs, 'cost', 2, 0.3);
    for (const edge of edges) atEnds(edge, edge.addresses, 'address', 4.2, 0.4);
  }

  function drawText(node, group, middle) {
    const { router, network } = picture.fonts;
    const size = partNames[node.part] === 'router' ? router : network;
    const small = router - 3;
    const spacing = 1.22;
    const height = (size + node.lines.length * small) * spacing;
    let y = middle - height / 2 + size * spacing / 2;
    const title = element('text', { x: node.x, y, class: 'title', 'font-size': size }, node.title);
    if (node.change) title.append(element('tspan', { class: 'change' }, ` ${node.change}`));
    group.append(title);
    y += (size + small) * spacing / 2;
    for (const line of node.lines) {
      group.append(element('text', { x: node.x, y, 'font-size': small }, line));
      y += small * spacing;
    }
  }

  function drawNode(node) {
    const part = partNames[node.part];
    const group = element('g', { class: `node ${part}` });
    const several = node.areas.length > 1 && !picture.difference;
    if (several) group.classList.add('several');
    if (!node.whole) group.classList.add('part');
    if (node.way) group.classList.add('way');
    if (node.change) group.classList.add('changed');
    tint(group, colourOf(node.areas[0], node.change));
    group.append(element('title', {}, [node.title, ...node.lines].join('\n')));
    const left = node.x - node.width / 2;
    const top = node.y - node.height / 2;
    if (part === 'network') {
      group.append(element('ellipse', { class: 'body', cx: node.x, cy: node.y,
        rx: node.width / 2, ry: node.height / 2 }));
    } else {
      if (node.boundary) {
        group.append(element('rect', { class: 'outer', x: left - 3, y: top - 3,
          width: node.width + 6, height: node.height + 6, rx: 5 }));
      }
      group.append(element('rect', { class: 'body', x: left, y: top, width: node.width,
        height: node.height, rx: several ? 0 : 4 }));
    }
    const stripe = several ? picture.fonts.router / 2 : 0;
    if (several) {
      const width = node.width / node.areas.length;
      node.areas.forEach((area, at) => {
        group.append(tint(element('rect', { class: 'stripe', x: left + at * width, y: top, width,
          height: stripe }), picture.areas[area].colour));
      });
    }
    drawText(node, group, node.y + stripe / 2);
    node.group = group;
    return group;
  }

  // The name of each area over its parts, for when nothing else can be read.
  function drawAreaNames() {
    const sums = picture.areas.map(() => ({ x: 0, y: 0, count: 0 }));
    for (const node of picture.nodes) {
      if (node.areas.length > 1) continue;
      const sum = sums[node.areas[0]];
      sum.x += node.x;
      sum.y += node.y;
      ++sum.count;
    }
    return sums.flatMap((sum, at) => {
      if (sum.count < 3) return [];
      const name = tint(element('text', { class: 'area-name', x: sum.x / sum.count,
        y: sum.y / sum.count }, picture.areas[at].title), picture.areas[at].colour);
      name.dataset.area = at;
      name.dataset.count = sum.count;
      return [name];
    });
  }

  function draw() {
    const edges = element('g');
    edges.style.setProperty('--width', `${picture.fonts.line}px`);
    const inColours = (partOf) => {
      const groups = new Map();
      for (const edge of picture.edges) {
        const colour = colourOf(edge.area, edge.change);
        if (!groups.has(colour)) groups.set(colour, tint(element('g'), colour));
        groups.get(colour).append(partOf(edge));
      }
      edges.append(...groups.values());
    };
    inColours(drawEdge);
    drawTexts(picture.edges);
    inColours((edge) => edge.texts);
    const nodes = element('g');
    picture.nodes.forEach((node, at) => {
      const group = drawNode(node);
      group.dataset.node = at;
      nodes.append(group);
    });
    const names = element('g', { id: 'area-names' });
    names.append(...drawAreaNames());
    scene.replaceChildren(edges, nodes, names);
  }

  // --- moving --------------------------------------------------------------------------------------

  function move() {
    scene.setAttribute('transform', `translate(${place.x} ${place.y}) scale(${place.scale})`);
    const size = place.scale * picture.fonts.router;
    scene.classList.toggle('far', size < 4.5);
    scene.classList.toggle('middle', size < 7);
    placeAreaNames();
  }

  // Names in the size of the window, the largest areas first, and none over another.
  function placeAreaNames() {
    const size = 13;
    const names = byId('area-names');
    names.setAttribute('font-size', size / place.scale);
    const taken = [];
    for (const name of [...names.children].sort((a, b) => b.dataset.count - a.dataset.count)) {
      const width = name.textContent.length * size * 0.62;
      const [x, y] = ['x', 'y'].map((axis) => name.getAttribute(axis) * place.scale);
      const overlaps = taken.some((other) => Math.abs(other.x - x) < (other.width + width) / 2 &&
        Math.abs(other.y - y) < size * 1.3);
      const hidden = overlaps || !shown.has(Number(name.dataset.area));
      name.classList.toggle('hidden', hidden);
      if (!hidden) taken.push({ x, y, width });
    }
  }

  function zoom(factor, x = view.clientWidth / 2, y = view.clientHeight / 2) {
    const scale = Math.min(largest, Math.max(smallest, place.scale * factor));
    const ratio = scale / place.scale;
    place = { x: x - (x - place.x) * ratio, y: y - (y - place.y) * ratio, scale };
    move();
  }

  const isShown = (node) => node.areas.some((area) => shown.has(area));

  function fit() {
    const nodes = picture.nodes.filter(isShown);
    if (nodes.length === 0) return;
    const margin = 24;
    const left = Math.min(...nodes.map((node) => node.x - node.width / 2));
    const right = Math.max(...nodes.map((node) => node.x + node.width / 2));
    const top = Math.min(...nodes.map((node) => node.y - node.height / 2));
    const bottom = Math.max(...nodes.map((node) => node.y + node.height / 2));
    const width = view.clientWidth - 2 * margin;
    const height = view.clientHeight - 2 * margin;
    const scale = Math.max(smallest, Math.min(1.6, width / (right - left), height / (bottom - top)));
    place = {
      x: view.clientWidth / 2 - scale * (left + right) / 2,
      y: view.clientHeight / 2 - scale * (top + bottom) / 2,
      scale,
    };
    move();
  }

  function bring(x, y) {
    const scale = Math.max(place.scale, 10 / picture.fonts.router);
    place = { x: view.clientWidth / 2 - x * scale, y: view.clientHeight / 2 - y * scale, scale };
    move();
  }

  // --- choosing ------------------------------------------------------------------------------------

  function lsaDetails(at, open) {
    const lsa = picture.lsas[at];
    const made = html('details');
    made.open = open;
    made.append(html('summary', (lsa.change ? `${lsa.change}: ` : '') + lsa.title));
    made.append(html('div', lsa.where, { class: 'faint' }), html('pre', lsa.text.replace(/^ {4}/gm, '')));
    if (lsa.fields.length > 0) {
      made.append(html('h3', 'What changed'), html('pre', lsa.fields.map(
        (field) => `${field.field}\n  before  ${field.before || '-'}\n  after   ${field.after || '-'}`).join('\n')));
    }
    return made;
  }

  function showLsas(into, lsas, open) {
    into.append(html('h3', lsas.length === 1 ? '1 LSA' : `${lsas.length} LSAs`));
    const most = 200;
    const list = html('div');
    lsas.slice(0, most).forEach((at) => list.append(lsaDetails(at, at === open || lsas.length <= 2)));
    into.append(list);
    if (lsas.length > most) {
      const rest = button(`Show the other ${lsas.length - most}`, () => {
        lsas.slice(most).forEach((at) => list.append(lsaDetails(at, at === open)));
        rest.remove();
      });
      into.append(rest);
    }
  }

  function costsOf(edge) {
    return edge.costs.map((cost, end) => [cost, edge.addresses[end]].filter(Boolean).join(' '))
      .filter(Boolean).join(' / ');
  }

  function showNode(into, node, open) {
    into.append(html('h2', node.title + (node.change ? ` (${node.change})` : '')));
    for (const line of node.lines) into.append(html('div', line));
    into.append(html('div', node.areas.map((area) => picture.areas[area].title).join('; '), { class: 'faint' }));
    const list = html('ul');
    for (const edge of picture.edges) {
      const end = edge.nodes.findIndex((at) => picture.nodes[at] === node);
      if (end < 0) continue;
      const other = picture.nodes[edge.nodes[1 - end]];
      list.append(itemOf([button(other.title, () => choose(other, { bringIt: true })),
        ` ${end === 1 ? costsOf({ ...edge, costs: [...edge.costs].reverse(), addresses: [...edge.addresses].reverse() }) : costsOf(edge)} `,
        button('line', () => choose(edge))]));
    }
    if (list.children.length > 0) into.append(html('h3', 'Neighbours and networks'), list);
    showLsas(into, node.lsas, open);
  }

  function showEdge(into, edge) {
    const ends = edge.nodes.map((at) => picture.nodes[at]);
    into.append(html('h2', `${ends[0].title} to ${ends[1].title}` + (edge.change ? ` (${edge.change})` : '')));
    into.append(html('div', picture.areas[edge.area].title, { class: 'faint' }));
    const list = html('ul');
    ends.forEach((node, end) => list.append(itemOf([button(node.title, () => choose(node, { bringIt: true })),
      ` ${edge.costs[end] ? `cost ${edge.costs[end]}` : ''} ${edge.addresses[end]}`])));
    if (edge.label) list.append(itemOf(edge.label));
    into.append(list);
    showLsas(into, edge.lsas);
  }

  function markChosen(what) {
    for (const part of [what.group, what.texts]) part?.classList.add('chosen');
  }

  function choose(what, { bringIt = false, lsa = null } = {}) {
    for (const marked of scene.querySelectorAll('.chosen')) marked.classList.remove('chosen');
    chosen = what;
    const details = byId('details');
    details.replaceChildren();
    if (what === null) {
      showRouters(details);
      return;
    }
    markChosen(what);
    if (what.points) {
      showEdge(details, what);
      return;
    }
    if (!isShown(what)) {
      what.areas.forEach((area) => shown.add(area));
      showAreas();
    }
    for (const edge of picture.edges) {
      if (edge.nodes.some((at) => picture.nodes[at] === what)) markChosen(edge);
    }
    if (bringIt) bring(what.x, what.y);
    showNode(details, what, lsa);
  }

  // What there is to choose from without a pointer.
  function showRouters(into) {
    const routers = picture.nodes.filter((node) => partNames[node.part] === 'router' && isShown(node));
    into.append(html('h3', 'Routers'));
    const list = html('ul');
    const most = 100;
    for (const node of routers.slice(0, most)) {
      list.append(itemOf(button(node.title, () => choose(node, { bringIt: true }))));
    }
    into.append(list);
    if (routers.length > most) {
      into.append(html('p', `and ${routers.length - most} more, which the search finds`, { class: 'faint' }));
    }
  }

  // The edge nearest to a point of the window, if it is near.
  function edgeAt(x, y) {
    const at = [(x - place.x) / place.scale, (y - place.y) / place.scale];
    let nearest = 8 / place.scale;
    let found = null;
    for (const edge of picture.edges) {
      if (!shown.has(edge.area)) continue;
      const points = outline(edge);
      for (let next = 1; next < points.length; ++next) {
        const [x0, y0] = points[next - 1];
        const dx = points[next][0] - x0;
        const dy = points[next][1] - y0;
        const square = dx * dx + dy * dy;
        const t = square === 0 ? 0 : Math.max(0, Math.min(1, ((at[0] - x0) * dx + (at[1] - y0) * dy) / square));
        const distance = Math.hypot(at[0] - x0 - t * dx, at[1] - y0 - t * dy);
        if (distance < nearest) {
          nearest = distance;
          found = edge;
        }
      }
    }
    return found;
  }

  // --- searching -----------------------------------------------------------------------------------

  function searchable() {
    if (!picture.texts) {
      picture.texts = picture.nodes.map((node) => [node.title, ...node.lines].join('\n').toLowerCase());
      picture.lsaTexts = picture.lsas.map((lsa) => `${lsa.title}\n${lsa.text}`.toLowerCase());
      picture.holders = new Map();
      picture.nodes.forEach((node) => node.lsas.forEach((at) => {
        if (!picture.holders.has(at)) picture.holders.set(at, node);
      }));
    }
    return picture;
  }

  function search(text) {
    for (const node of scene.querySelectorAll('.hit')) node.classList.remove('hit');
    const results = byId('results');
    results.replaceChildren();
    byId('found').textContent = '';
    const wanted = text.trim().toLowerCase();
    if (wanted === '') return;
    const { texts, lsaTexts, holders } = searchable();
    const most = 40;
    let nodes = 0;
    let lsas = 0;
    picture.nodes.forEach((node, at) => {
      if (!texts[at].includes(wanted)) return;
      node.group.classList.add('hit');
      if (++nodes <= most) results.append(itemOf(button(node.title, () => choose(node, { bringIt: true }))));
    });
    lsaTexts.forEach((body, at) => {
      if (!body.includes(wanted) || !holders.has(at)) return;
      if (++lsas > most) return;
      results.append(itemOf(button(picture.lsas[at].title,
        () => choose(holders.get(at), { bringIt: true, lsa: at }))));
    });
    const count = (number, one, many) => `${number} ${number === 1 ? one : many}`;
    byId('found').textContent = `${count(nodes, 'place', 'places')}, ${count(lsas, 'LSA', 'LSAs')}` +
      (nodes > most || lsas > most ? `; the first ${most} of each are listed` : '');
  }

  // --- settings ------------------------------------------------------------------------------------

  function showAreas() {
    for (const node of picture.nodes) node.group.classList.toggle('hidden', !isShown(node));
    for (const { area, group, texts } of picture.edges) {
      for (const part of [group, texts]) part.classList.toggle('hidden', !shown.has(area));
    }
    placeAreaNames();
    byId('areas').querySelectorAll('input').forEach((box, at) => { box.checked = shown.has(at); });
  }

  function listAreas() {
    byId('areas').replaceChildren(...picture.areas.map((area, at) => {
      const label = html('label');
      const box = html('input', null, { type: 'checkbox' });
      box.addEventListener('change', () => {
        if (box.checked) shown.add(at); else shown.delete(at);
        showAreas();
        if (chosen === null) choose(null);
      });
      const mark = picture.difference ? '' : tint(html('span', null, { class: 'swatch' }), area.colour);
      label.append(box, ' ', mark, area.title);
      const only = button('only', () => {
        shown = new Set([at]);
        showAreas();
        fit();
        choose(null);
      });
      only.setAttribute('aria-label', `only ${area.title}`);
      return itemOf([label, only]);
    }));
    byId('legend').replaceChildren(picture.legend.join('; '));
    if (!picture.difference) return;
    for (const [change, colour] of Object.entries(picture.changes)) {
      byId('legend').append(' ', tint(html('span', null, { class: 'swatch' }), colour), change || 'as before');
    }
  }

  function setDetail() {
    scene.classList.toggle('no-costs', !byId('costs').checked);
    scene.classList.toggle('no-addresses', !byId('addresses').checked);
  }

  function show(at) {
    picture = pictures[at];
    byId('title').textContent = picture.title;
    byId('addresses').checked = picture.addresses;
    shown = new Set(picture.areas.keys());
    draw();
    listAreas();
    showAreas();
    setDetail();
    choose(null);
    search(byId('search').value);
    fit();
  }

  // --- what people do ------------------------------------------------------------------------------

  const pointers = new Map();
  let travelled = 0;

  view.addEventListener('pointerdown', (event) => {
    view.setPointerCapture(event.pointerId);
    pointers.set(event.pointerId, [event.offsetX, event.offsetY]);
    if (pointers.size === 1) travelled = 0;
  });

  view.addEventListener('pointermove', (event) => {
    const before = pointers.get(event.pointerId);
    if (before === undefined) return;
    const now = [event.offsetX, event.offsetY];
    travelled += Math.hypot(now[0] - before[0], now[1] - before[1]);
    if (pointers.size === 1 && travelled > 4) {
      view.classList.add('moving');
      place.x += now[0] - before[0];
      place.y += now[1] - before[1];
      move();
    } else if (pointers.size === 2) {
      const [, other] = [...pointers].find(([id]) => id !== event.pointerId);
      const apart = (point) => Math.hypot(point[0] - other[0], point[1] - other[1]);
      if (apart(before) > 0) zoom(apart(now) / apart(before), other[0], other[1]);
    }
    pointers.set(event.pointerId, now);
  });

  function release(event) {
    pointers.delete(event.pointerId);
    view.classList.remove('moving');
  }
  view.addEventListener('pointercancel', release);
  view.addEventListener('pointerup', (event) => {
    const was = pointers.has(event.pointerId);
    release(event);
    if (!was || travelled > 4) return;
    const box = view.getBoundingClientRect();
    const under = document.elementFromPoint(event.clientX, event.clientY);
    const node = under && under.closest('.node');
    choose(node ? picture.nodes[Number(node.dataset.node)]
      : edgeAt(event.clientX - box.left, event.clientY - box.top));
  });

  view.addEventListener('wheel', (event) => {
    event.preventDefault();
    zoom(Math.exp(-event.deltaY * (event.deltaMode === 1 ? 0.05 : 0.0015)), event.offsetX, event.offsetY);
  }, { passive: false });

  const steps = { ArrowLeft: [60, 0], ArrowRight: [-60, 0], ArrowUp: [0, 60], ArrowDown: [0, -60] };
  view.addEventListener('keydown', (event) => {
    if (event.ctrlKey || event.metaKey || event.altKey) return;
    if (steps[event.key]) {
      place.x += steps[event.key][0];
      place.y += steps[event.key][1];
      move();
    } else if (event.key === '+' || event.key === '=') {
      zoom(1.25);
    } else if (event.key === '-') {
      zoom(0.8);
    } else if (event.key === '0') {
      fit();
    } else if (event.key === 'Escape') {
      choose(null);
    } else {
      return;
    }
    event.preventDefault();
  });

  byId('closer').addEventListener('click', () => zoom(1.4));
  byId('farther').addEventListener('click', () => zoom(1 / 1.4));
  byId('whole').addEventListener('click', fit);
  byId('costs').addEventListener('change', setDetail);
  byId('addresses').addEventListener('change', setDetail);
  byId('search').addEventListener('input', (event) => search(event.target.value));
  byId('search').addEventListener('keydown', (event) => {
    const first = byId('results').querySelector('button');
    if (event.key === 'Enter' && first) first.click();
  });
  const instance = byId('instance');
  pictures.forEach((each, at) => instance.append(html('option', each.name, { value: at })));
  byId('instances').hidden = pictures.length < 2;
  instance.addEventListener('change', () => show(Number(instance.value)));
  window.addEventListener('resize', fit);
  show(0);
})();
