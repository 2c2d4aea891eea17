// The four stores, of which one is shown as a list.
"use strict";

const kBoxes = ["Inbox", "Sent", "Drafts", "Archive", "Templates"];
const kUnread = 2;
const kEntryTypes = ["mobile", "second mobile", "home", "work", "fax", "e-mail", "second e-mail"];
const kCalls = ["", "dialled", "received", "missed"];
const kRepeats = ["", "daily", "weekly", "monthly", "yearly"];

const date = (text) => (text === "-" ? "" : text.replace("T", " ").slice(0, 16));

function entry(id, head, side, body, mark = "") {
  return make("li", { class: mark, "data-id": id },
    make("div", { class: "entry-head" }, make("strong", {}, head || "(no name)"), make("span", {}, side)),
    make("p", {}, body));
}

function contactEntry([id, contact]) {
  const name = `${contact.firstName} ${contact.lastName}`.trim();
  const values = contact.entries.map(({ type, value }) => `${kEntryTypes[type] ?? `type ${type}`} ${value}`);
  return entry(id, name, state.groups[contact.group] ?? "", values.join(" · "));
}

function messageEntry([id, message]) {
  const isUnread = message.status === kUnread;
  return entry(id, message.address, [isUnread ? "unread" : "", date(message.time)].filter(Boolean).join(" · "), message.body,
    isUnread ? "unread-entry" : "");
}

function eventEntry([id, event]) {
  const end = event.end.slice(0, 10) === event.start.slice(0, 10) ? event.end.slice(11, 16) : date(event.end);
  return entry(id, event.description, kRepeats[event.repeatType] ?? `repeat type ${event.repeatType}`,
    `${date(event.start)} – ${end}`);
}

function callEntry([id, call]) {
  return entry(id, call.text, date(call.time), `${kCalls[call.list] ?? `list ${call.list}`}, ${call.duration} s`);
}

function byBox(items) {
  return kBoxes.map((name, box) => [name, items.filter(([, message]) => message.box === box)]);
}

const together = (items) => [["", items]];

const kStores = [
  { name: "messages", title: "Messages", groups: byBox, show: messageEntry, isNewestFirst: true },
  { name: "contacts", title: "Contacts", groups: together, show: contactEntry },
  { name: "events", title: "Events", groups: together, show: eventEntry },
  { name: "calls", title: "Calls", groups: together, show: callEntry, isNewestFirst: true },
];
let current = kStores[0];
const known = {}; // of each store, the items as they were shown last

function showStore() {
  if (!(current.name in state)) return;
  const items = Object.entries(state[current.name]);
  if (current.isNewestFirst) items.reverse();
  const before = known[current.name];
  const lists = current.groups(items).filter(([, group]) => group.length > 0).map(([name, group]) => [
    name === "" ? "" : make("h3", {}, `${name} `, make("small", {}, group.length)),
    make("ul", {}, ...group.map((item) => {
      const element = current.show(item);
      if (before && before[item[0]] !== JSON.stringify(item[1])) element.classList.add("fresh");
      return element;
    }))]);
  known[current.name] = Object.fromEntries(items.map(([id, item]) => [id, JSON.stringify(item)]));
  $("store").replaceChildren(...lists.flat());
  if (items.length === 0) $("store").append(make("p", { class: "empty" }, "Nothing is stored here."));
}

function choose(store) {
  current = store;
  for (const { name } of kStores) {
    $(`tab-${name}`).setAttribute("aria-selected", String(name === store.name));
    $(`tab-${name}`).tabIndex = name === store.name ? 0 : -1;
  }
  $("store").setAttribute("aria-labelledby", `tab-${store.name}`);
  showStore();
}

$("tabs").append(...kStores.map((store) => {
  const tab = make("button", { type: "button", role: "tab", id: `tab-${store.name}`, "aria-controls": "store" },
    store.title, " ", make("small", {}));
  tab.addEventListener("click", () => choose(store));
  whenChanged([store.name, "groups"], () => {
    tab.lastChild.textContent = Object.keys(state[store.name]).length;
    if (store === current) showStore();
  });
  return tab;
}));

$("tabs").addEventListener("keydown", (event) => {
  const step = { ArrowRight: 1, ArrowLeft: -1 }[event.key];
  if (!step) return;
  choose(kStores[(kStores.indexOf(current) + step + kStores.length) % kStores.length]);
  $(`tab-${current.name}`).focus();
});
choose(current);
