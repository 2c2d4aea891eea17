// Any control line, and the answers to all of them, wherever they came from.
"use strict";

const kMostAnswers = 100;

whenHappens("said", (line, missed, isNews) => {
  const isError = line.startsWith("error: ");
  $("answers").append(make("li", { class: isError ? "bad" : "" }, line));
  while ($("answers").children.length > kMostAnswers) $("answers").firstChild.remove();
  $("answers").scrollTop = $("answers").scrollHeight;
  if (isNews && !line.includes(" = ")) announce(line, isError);
});

$("console").addEventListener("submit", (event) => {
  event.preventDefault();
  run($("console-line").value);
  $("console-line").select();
});
