// Exchanges, one line each, newest first. A line that is opened shows fields and bytes.
"use strict";

const kMostLines = 300;
const kPoll = 49;
const held = []; // those that came while the wire was paused
let isPaused = false;

const fieldText = (fields = {}) =>
  Object.entries(fields).map(([name, value]) => `${name}=${typeof value === "string" ? JSON.stringify(value) : value}`).join(" ");

// [class, text] of what became of it
function verdict({ rejected, reply = {}, faults = [] }) {
  if (rejected) return ["bad", "rejected"];
  if (faults.length > 0) return ["warn", faults.join(" ")];
  if (reply.status) return ["bad", `status ${reply.status}`];
  if (reply.result) return ["bad", `result ${reply.result}`];
  return ["good", "ok"];
}

function fieldTable(title, fields = {}) {
  const rows = Object.entries(fields).map(([name, value]) =>
    make("tr", {}, make("th", { scope: "row" }, name), make("td", {}, [].concat(value).join(", "))));
  return make("table", {}, make("caption", {}, title), make("tbody", {}, ...rows));
}

function hexDump(title, hex) {
  const lines = [];
  for (let at = 0; at < hex.length; at += 32) {
    const bytes = hex.slice(at, at + 32).match(/../g);
    const text = bytes.map((byte) => parseInt(byte, 16)).map((code) => (code > 31 && code < 127 ? String.fromCharCode(code) : "·"));
    lines.push(`${(at / 2).toString(16).padStart(4, "0")}  ${bytes.join(" ").padEnd(47)}  ${text.join("")}`);
  }
  return make("figure", {}, make("figcaption", {}, `${title}, ${hex.length / 2} bytes`),
    make("pre", { tabindex: "0" }, lines.join("\n")));
}

function exchangeDetail(exchange) {
  const parts = [];
  if (exchange.rejected) parts.push(make("p", { class: "bad" }, exchange.rejected));
  if (exchange.request) parts.push(fieldTable("Request", exchange.request));
  if (exchange.reply) parts.push(fieldTable("Reply", exchange.reply));
  if (exchange.received) parts.push(hexDump("Received", exchange.received));
  if (exchange.sent) parts.push(hexDump("Sent", exchange.sent));
  return make("div", { class: "detail" }, ...parts);
}

function exchangeLine(exchange) {
  const [mark, text] = verdict(exchange);
  const summary = make("summary", {},
    make("time", {}, exchange.time.slice(11, 23)),
    make("span", { class: "command" }, exchange.command ?? ""),
    make("strong", {}, exchange.name),
    make("span", { class: "fields mono" }, exchange.rejected ?? [fieldText(exchange.request), fieldText(exchange.reply)].join(" → ").replace(/^ → /, "")),
    exchange.name === "close" ? "" : make("span", { class: `badge ${mark}` }, text));
  const details = make("details", {}, summary);
  details.addEventListener("toggle", () => {
    if (details.open && details.children.length === 1) details.append(exchangeDetail(exchange));
  });
  const line = make("li", { "data-command": exchange.command ?? exchange.name }, details);
  line.haystack = `${summary.textContent} ${text}`.toLowerCase();
  return line;
}

function applyFilter(line) {
  const isPoll = line.dataset.command === String(kPoll);
  line.hidden = (isPoll && !$("wire-polls").checked) || !line.haystack.includes($("wire-filter").value.trim().toLowerCase());
}

function addLine(line) {
  applyFilter(line);
  $("wire").prepend(line);
  while ($("wire").children.length > kMostLines) $("wire").lastChild.remove();
  $("wire-empty").hidden = true;
}

whenHappens("exchange", (exchange, missed) => {
  const lines = [exchangeLine(exchange)];
  if (missed > 0) {
    lines.unshift(make("li", { class: "empty" }, `${missed} lines came too fast to be shown`));
    lines[0].haystack = "";
  }
  if (!isPaused) return lines.forEach(addLine);
  held.push(...lines);
  held.splice(0, held.length - kMostLines);
  $("wire-pause").textContent = `Resume (${held.length})`;
});

$("wire-pause").addEventListener("click", () => {
  isPaused = !isPaused;
  $("wire-pause").setAttribute("aria-pressed", String(isPaused));
  $("wire-pause").textContent = isPaused ? "Resume" : "Pause";
  held.splice(0).forEach(addLine);
});
$("wire-clear").addEventListener("click", () => $("wire").replaceChildren());
for (const id of ["wire-filter", "wire-polls"])
  $(id).addEventListener("input", () => [...$("wire").children].forEach(applyFilter));
