// The language that the reader has chosen in any row of tabs is that of all of them, on every page.
(() => {
  const key = "ard-language";
  const labels = () => [...document.querySelectorAll(".tab-set > .tab-label")];
  const choose = (language) => {
    for (const label of labels()) {
      if (label.textContent.trim() === language) label.previousElementSibling.checked = true;
    }
  };
  document.addEventListener("DOMContentLoaded", () => {
    try {
      const language = localStorage.getItem(key);
      if (language) choose(language);
    } catch {
      // A browser that keeps nothing of pages from the file system: the choice is that of the page.
    }
    for (const label of labels()) {
      label.addEventListener("click", () => {
        // What stands above may become longer or shorter: the row that was clicked stays where it is.
        const before = label.getBoundingClientRect().top;
        choose(label.textContent.trim());
        window.scrollBy(0, label.getBoundingClientRect().top - before);
        try {
          localStorage.setItem(key, label.textContent.trim());
        } catch {
          // As above.
        }
      });
    }
  });
})();
