// Faults, a switch for each kind that phnsim knows.
"use strict";

// "fault delay=200@6*1" from the fields
function faultLine(kind, values) {
  const suffix = (mark, value) => (value === "" ? "" : mark + value);
  return `fault ${kind}${suffix("=", values)}${suffix("@", $("fault-command").value)}` +
    `${suffix("*", $("fault-times").value)}${suffix("%", $("fault-percent").value)}`;
}

function faultRow({ name, form, help }) {
  const wanted = form.slice(name.length).replace(/[=[\]]/g, "");
  const toggle = make("input", { type: "checkbox", role: "switch", id: `fault-${name}`, "data-kind": name });
  const values = wanted === "" ? "" :
    make("input", { class: "mono", "aria-label": `${name}: ${wanted}`, placeholder: wanted, autocomplete: "off" });
  toggle.addEventListener("change", () => {
    const line = toggle.checked ? faultLine(name, wanted === "" ? "" : values.value.trim()) : `clear-faults ${name}`;
    toggle.checked = !toggle.checked; // until phnsim says that it is so
    run(line);
  });
  return make("li", {},
    make("label", { class: "plain" }, toggle, name), values,
    make("span", { class: "active mono", "data-active": name }),
    make("p", {}, help));
}

function showActive() {
  for (const toggle of document.querySelectorAll("#faults [data-kind]")) {
    const texts = state.faults.filter(({ kind }) => kind === toggle.dataset.kind).map(({ text }) => text);
    toggle.checked = texts.length > 0;
    document.querySelector(`[data-active="${toggle.dataset.kind}"]`).textContent = texts.join(" ");
  }
}

whenChanged(["vocabulary"], ({ vocabulary }) => {
  $("faults").replaceChildren(...vocabulary.faults.map(faultRow));
  $("fault-command").replaceChildren(
    make("option", { value: "" }, "any request"), make("option", { value: "at" }, "AT commands"),
    ...vocabulary.commands.map(({ number, name }) => make("option", { value: number }, `${number} ${name}`)));
});
whenChanged(["faults", "vocabulary"], showActive);
