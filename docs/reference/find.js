// Finds names while they are typed. What is known comes from names.js.
addEventListener("DOMContentLoaded", () => {
  const field = document.getElementById("find");
  const list = document.getElementById("found");
  const most = 50;

  const found = (word) => {
    const hits = names.filter(([name]) => name.toLowerCase().includes(word));
    const rank = ([name]) => (name.toLowerCase() === word ? 0 : name.toLowerCase().startsWith(word) ? 1 : 2);
    return hits.sort((a, b) => rank(a) - rank(b)).slice(0, most);
  };
  const entry = ([name, scope, place]) => {
    const link = document.createElement("a");
    link.href = field.dataset.base + place;
    link.append(name);
    const where = document.createElement("span");
    where.append(scope);
    link.append(" ", where);
    const item = document.createElement("li");
    item.append(link);
    return item;
  };
  const show = () => {
    const word = field.value.trim().toLowerCase();
    const items = word ? found(word).map(entry) : [];
    if (word && !items.length) items.push(Object.assign(document.createElement("li"), {textContent: "nothing of that name"}));
    list.replaceChildren(...items);
    list.hidden = !word;
  };
  const step = (event) => {
    const links = [field, ...list.querySelectorAll("a")];
    const way = {ArrowDown: 1, ArrowUp: -1}[event.key];
    const next = links[links.indexOf(document.activeElement) + way];
    if (event.key === "Escape") {
      field.value = "";
      show();
      field.focus();
    } else if (event.key === "Enter" && document.activeElement === field) {
      list.querySelector("a")?.click();
    } else if (way && next) {
      next.focus();
      event.preventDefault();
    }
  };
  field.addEventListener("input", show);
  document.getElementById("search").addEventListener("keydown", step);
  list.addEventListener("click", () => (list.hidden = true));
});
