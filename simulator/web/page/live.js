// What phnsim tells this page, and what this page asks of it.
"use strict";

const token = new URLSearchParams(location.search).get("token");

const state = {}; // the parts that phnsim has told so far
const changed = new Set(); // those that no renderer has seen
const renderers = [];
const listeners = { exchange: [], said: [] };
let source = null;
let seen = 0; // the number of the last happening
let isPresent = false; // what happens now is news

// Calls `render` whenever one of these parts has changed and all of them are there.
function whenChanged(names, render) {
  renderers.push({ names, render });
}

// Calls `listen(what, number of happenings missed before it, whether it is news)`.
function whenHappens(kind, listen) {
  listeners[kind].push(listen);
}

async function post(line) {
  try {
    const response = await fetch(`/control?token=${token}`, { method: "POST", body: line });
    if (!response.ok) announce((await response.text()).trim(), true);
  } catch {
    announce("phnsim cannot be reached.", true);
  }
}

// One after the other: requests of a browser may overtake each other.
let posted = Promise.resolve();
function run(line) {
  posted = posted.then(() => post(line));
}

// A word of a control line, which has no way to write a quotation mark.
function quoted(text) {
  return `"${text.replaceAll('"', "")}"`;
}

function render() {
  for (const { names, render } of renderers)
    if (names.some((name) => changed.has(name)) && names.every((name) => name in state)) render(state);
  changed.clear();
  isPresent = true;
}

function takeHappening(kind, event) {
  const number = Number(event.lastEventId);
  if (number <= seen) return;
  const missed = seen === 0 ? 0 : number - seen - 1;
  seen = number;
  for (const listen of listeners[kind]) listen(JSON.parse(event.data), missed, isPresent);
}

function showLink(text, isLive) {
  $("link").textContent = text;
  $("link").classList.toggle("live", isLive);
  document.body.classList.toggle("stale", !isLive);
}

function connect() {
  $("reconnect").hidden = true;
  isPresent = false;
  source = new EventSource(`/events?token=${token}`);
  source.onopen = () => showLink("live", true);
  source.onerror = () => {
    const isRefused = source.readyState === EventSource.CLOSED;
    showLink(isRefused ? "phnsim refuses this page: open the address that it has printed" : "phnsim has ended", false);
    $("reconnect").hidden = !isRefused;
  };
  source.addEventListener("state", (event) => {
    const [name, part] = JSON.parse(event.data);
    state[name] = part;
    changed.add(name);
  });
  for (const kind of Object.keys(listeners)) source.addEventListener(kind, (event) => takeHappening(kind, event));
  source.addEventListener("now", render);
}

// A browser has few connections to one address: a page that nobody sees gives its own back.
document.addEventListener("visibilitychange", () => {
  source?.close();
  if (document.visibilityState === "visible") connect();
});
$("reconnect").addEventListener("click", connect);
addEventListener("DOMContentLoaded", connect);
