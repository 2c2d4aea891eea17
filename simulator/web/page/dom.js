// Elements of the page. What comes from phnsim gets into it as text only.
"use strict";

const $ = (id) => document.getElementById(id);

// make("li", {class: "fresh", hidden: true}, "text", otherElement)
function make(tag, attributes = {}, ...children) {
  const element = document.createElement(tag);
  for (const [name, value] of Object.entries(attributes)) {
    if (value === true) element.setAttribute(name, "");
    else if (value !== false) element.setAttribute(name, value);
  }
  element.append(...children.map((child) => (child instanceof Node ? child : String(child))));
  return element;
}

// For eyes and screen readers, for a few seconds.
let toastTimer = 0;
function announce(text, isError = false) {
  $("toast").textContent = text;
  $("toast").classList.toggle("error", isError);
  clearTimeout(toastTimer);
  toastTimer = setTimeout(() => ($("toast").textContent = ""), 6000);
}
