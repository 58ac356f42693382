
"use strict";

(() => {
  const byId = (id) => document.getElementById(id);

  // The picture's view is a rectangle of the drawing, in its own units.
  const picture = byId("picture");
  const drawing = picture === null ? null : picture.querySelector("svg");
  const zoomMax = 12, enlargeMax = 1.6, step = 1.4;
  let whole = null, view = null, fitted = true;

  const fitScale = () =>
    Math.min(picture.clientWidth / whole.width, picture.clientHeight / whole.height, enlargeMax);
  const clamp = (value, low, high) => Math.min(Math.max(value, low), high);

  const show = (next) => {
    const fit = fitScale();
    const scale = clamp(next.scale, Math.min(fit, 1), zoomMax);
    const width = picture.clientWidth / scale, height = picture.clientHeight / scale;
    // The middle of the view stays on the drawing.
    const x = clamp(next.x, whole.x, whole.x + whole.width);
    const y = clamp(next.y, whole.y, whole.y + whole.height);
    view = { x, y, scale };
    drawing.setAttribute("viewBox", [x - width / 2, y - height / 2, width, height].map((n) => n.toFixed(2)).join(" "));
    byId("scale").textContent = Math.round(scale * 100) + " %";
  };

  const fit = () => {
    const width = picture.clientWidth;
    const height = whole.height * Math.min(width / whole.width, enlargeMax) + 16;
    picture.style.height = clamp(height, 160, Math.max(240, window.innerHeight * 0.75)) + "px";
    show({ x: whole.x + whole.width / 2, y: whole.y + whole.height / 2, scale: fitScale() });
    fitted = true;
  };
  const zoom = (factor) => { show({ ...view, scale: view.scale * factor }); fitted = false; };
  const pan = (dx, dy) => { show({ ...view, x: view.x + dx / view.scale, y: view.y + dy / view.scale }); fitted = false; };

  const keys = {
    "+": () => zoom(step), "=": () => zoom(step), "-": () => zoom(1 / step), "0": fit,
    ArrowLeft: () => pan(-60, 0), ArrowRight: () => pan(60, 0), ArrowUp: () => pan(0, -60), ArrowDown: () => pan(0, 60),
  };

  const nameOf = (link) => link.getAttribute("xlink:title");

  // A symbol and the wires that end at it.
  const choose = (symbol) => {
    for (const old of drawing.querySelectorAll(".chosen")) old.classList.remove("chosen");
    if (symbol === null) return;
    symbol.classList.add("chosen");
    for (const edge of drawing.querySelectorAll(".edge." + symbol.id)) edge.classList.add("chosen");
  };

  const center = (symbol) => {
    const box = symbol.getBBox();
    const move = drawing.querySelector("g").transform.baseVal.consolidate().matrix;
    show({ x: box.x + box.width / 2 + move.e, y: box.y + box.height / 2 + move.f, scale: Math.max(view.scale, 1) });
    fitted = false;
  };

  const startPicture = () => {
    // What is shown of a symbol or wire under the pointer: its name, not the one that the drawing has for it.
    for (const link of drawing.querySelectorAll("a"))
      link.closest(".node, .edge").querySelector("title").textContent = nameOf(link);
    const { x, y, width, height } = drawing.viewBox.baseVal;
    whole = { x, y, width, height };
    picture.classList.add("live");
    document.querySelector(".tools").hidden = false;
    byId("picture-keys").hidden = false;
    fit();
    byId("zoom-in").addEventListener("click", () => zoom(step));
    byId("zoom-out").addEventListener("click", () => zoom(1 / step));
    byId("fit").addEventListener("click", fit);
    picture.addEventListener("keydown", (event) => {
      if (event.ctrlKey || event.metaKey || event.altKey || !(event.key in keys)) return;
      event.preventDefault();
      keys[event.key]();
    });
    picture.addEventListener("wheel", (event) => {
      if (!event.ctrlKey) return; // the page scrolls
      event.preventDefault();
      zoom(Math.exp(-event.deltaY / 200));
    }, { passive: false });
    let from = null, moved = false;
    picture.addEventListener("pointerdown", (event) => {
      from = { x: event.clientX, y: event.clientY };
      moved = false;
    });
    picture.addEventListener("pointermove", (event) => {
      if (from === null || (event.buttons & 1) === 0) return;
      if (!moved && Math.hypot(event.clientX - from.x, event.clientY - from.y) < 4) return;
      if (!moved) picture.setPointerCapture(event.pointerId);
      moved = true;
      picture.classList.add("moving");
      pan(from.x - event.clientX, from.y - event.clientY);
      from = { x: event.clientX, y: event.clientY };
    });
    for (const end of ["pointerup", "pointercancel"])
      picture.addEventListener(end, () => { from = null; picture.classList.remove("moving"); });
    picture.addEventListener("click", (event) => { if (!moved) choose(event.target.closest(".node")); });
    window.addEventListener("resize", () => { if (fitted) fit(); else show(view); });
  };

  // What can be found: names in the tables and equations, and the symbols of the picture.
  const query = byId("query"), found = byId("found"), hits = byId("hits");
  const hint = [...found.childNodes], listMax = 40;
  const kindOf = (place) =>
    place.matches("dt *") ? "equation" : place.closest("table").querySelector("th").textContent.toLowerCase();
  const items = [...document.querySelectorAll("[data-signal]")].map((place) => ({
    place, text: place.textContent, kind: kindOf(place), symbol: false,
  }));
  for (const place of document.querySelectorAll("g.node"))
    items.push({
      place, text: nameOf(place.querySelector("a")), kind: place.matches(".pin") ? "pin, drawn" : "symbol", symbol: true,
    });

  const goTo = (item) => {
    if (item.symbol) {
      choose(item.place);
      center(item.place);
      picture.focus({ preventScroll: true });
      picture.scrollIntoView({ block: "center" });
      return;
    }
    item.place.tabIndex = -1;
    item.place.focus({ preventScroll: true });
    item.place.scrollIntoView({ block: "center" });
  };

  const button = (item) => {
    const line = document.createElement("li"), press = document.createElement("button");
    press.type = "button";
    for (const [text, role] of [[item.text, ""], [item.kind, "role"]]) {
      const part = document.createElement("span");
      part.textContent = text;
      part.className = role;
      press.append(part);
    }
    press.addEventListener("click", () => goTo(item));
    line.append(press);
    return line;
  };

  const search = () => {
    const wanted = query.value.trim().toLowerCase();
    const matches = [];
    for (const item of items) {
      const matching = wanted !== "" && item.text.toLowerCase().includes(wanted);
      item.place.classList.toggle("hit", matching);
      if (matching) matches.push(item);
    }
    hits.replaceChildren(...matches.slice(0, listMax).map(button));
    if (wanted === "") found.replaceChildren(...hint);
    else found.textContent = matches.length === 0 ? "Nothing has that in its name."
      : matches.length + " found" + (matches.length > listMax ? ", the first " + listMax + " listed" : "");
  };

  const startSearch = () => {
    byId("search").hidden = false;
    query.addEventListener("input", search);
    byId("search").addEventListener("submit", (event) => {
      event.preventDefault();
      const first = hits.querySelector("button");
      if (first !== null) first.click();
    });
    byId("search").addEventListener("keydown", (event) => {
      const stops = [query, ...hits.querySelectorAll("button")];
      const at = stops.indexOf(document.activeElement);
      const next = { ArrowDown: at + 1, ArrowUp: at - 1 }[event.key];
      if (at >= 0 && stops[next] !== undefined) {
        event.preventDefault();
        stops[next].focus();
      }
      if (event.key !== "Escape") return;
      query.value = "";
      search();
      query.focus();
    });
    document.addEventListener("keydown", (event) => {
      if (event.key !== "/" || event.ctrlKey || event.metaKey || event.altKey || event.target === query) return;
      event.preventDefault();
      query.focus();
      query.select();
    });
  };

  // On paper all is unfolded and the picture is whole.
  const startPrinting = () => {
    let opened = [];
    window.addEventListener("beforeprint", () => {
      opened = [...document.querySelectorAll("details:not([open])")];
      for (const part of opened) part.open = true;
      if (whole !== null) drawing.setAttribute("viewBox", [whole.x, whole.y, whole.width, whole.height].join(" "));
    });
    window.addEventListener("afterprint", () => {
      for (const part of opened) part.open = false;
      if (whole !== null) show(view);
    });
  };

  if (drawing !== null) startPicture();
  startSearch();
  startPrinting();
})();
