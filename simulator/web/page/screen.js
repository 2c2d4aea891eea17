// The handset's own screen.
"use strict";

const kMostBars = 5;

function showBars(element, name, bars) {
  element.replaceChildren(
    ...Array.from({ length: kMostBars }, (_, i) => make("i", { class: i < bars ? "on" : "" })));
  element.setAttribute("aria-label", `${name} ${bars} of ${kMostBars} bars`);
}

function connectionText({ connection0, connection4, connection8, connection12 }) {
  if (connection0 === 1) return "Connecting …";
  if (connection0 !== 2) return "";
  return `Connected ${connection12} s · ↑ ${connection4} ↓ ${connection8} bytes`;
}

whenChanged(["network", "setup"], ({ network, setup }) => {
  const isOn = setup.radio !== 0;
  showBars($("bars"), "signal", isOn ? network.network4 : 0);
  showBars($("data-bars"), "EVDO signal", isOn ? network.network64 : 0);
  $("roaming").hidden = !isOn || network.network5 === 0;
  $("operator").textContent = !isOn ? "Radio off" : network.network0 === 0 ? "No service" : network.network26;
});

whenChanged(["battery"], ({ battery: { battery1, battery2 } }) => {
  const power = ["discharging", "charging", "full"][battery1] ?? `state ${battery1}`;
  $("percent").textContent = `${battery2} %`;
  $("charge").style.setProperty("--level", `${Math.min(battery2, 100)}%`);
  $("battery").setAttribute("aria-label", `battery ${battery2} percent, ${power}`);
  $("battery").classList.toggle("charging", battery1 === 1);
  $("battery").classList.toggle("low", battery2 <= 15);
});

whenChanged(["connection"], ({ connection }) => ($("connection").textContent = connectionText(connection)));

whenChanged(["messages"], ({ messages }) => {
  const unread = Object.values(messages).filter(({ box, status }) => box === 0 && status === 2).length;
  $("unread").textContent = unread === 0 ? "" : unread === 1 ? "✉ 1 unread message" : `✉ ${unread} unread messages`;
});

whenChanged(["identity"], ({ identity }) => {
  $("model").textContent = identity.model;
  $("number").textContent = identity.number;
  document.title = `${identity.model}, simulated handset`;
});
