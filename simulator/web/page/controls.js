// Sliders, switches and buttons. Each writes a control line; what it shows is what phnsim tells.
"use strict";

function show(control, value) {
  if (control.type === "checkbox") control.checked = value !== 0;
  else if (control.matches(":active") || (control === document.activeElement && control.type === "text")) return;
  else control.value = value;
  showOutput(control);
}

function showOutput(control) {
  const output = document.querySelector(`output[for="${control.id}"]`);
  if (output) output.value = control.value + output.dataset.unit;
}

for (const control of document.querySelectorAll("[data-path]")) {
  const [part, member] = control.dataset.path.split("/");
  whenChanged([part], (state) => show(control, state[part][member]));
  control.addEventListener("input", () => showOutput(control));
  control.addEventListener("change", () => {
    const value = control.type === "checkbox" ? Number(control.checked)
      : control.type === "text" ? JSON.stringify(control.value) : control.value;
    run(`set ${control.dataset.path} ${value}`);
  });
}

whenChanged(["plugged"], ({ plugged }) => {
  $("plugged").textContent = plugged ? "Plugged in: a host can open the port." : "Unplugged: no host can see the handset.";
  $("screen").classList.toggle("unplugged", !plugged);
  $("plug").disabled = plugged;
  $("unplug").disabled = $("hangup").disabled = !plugged;
});

for (const id of ["plug", "unplug", "hangup"]) $(id).addEventListener("click", () => run(id));

$("message").addEventListener("submit", (event) => {
  event.preventDefault();
  const { number, text } = event.target.elements;
  run(`message ${quoted(number.value)} ${text.value}`);
});

$("call").addEventListener("submit", (event) => {
  event.preventDefault();
  const { number, way, seconds } = event.target.elements;
  run(`call ${way.value} ${quoted(number.value)} ${seconds.value}`);
});
