// What a search offers first: answers to questions, then pages that explain; of the reference, members
// that have the name.
var Scorer = {
  score: ([page, title, anchor, description, score]) => {
    if (page === "questions") return score + 30;
    if (page.startsWith("samples/")) return score - 10;
    if (page.startsWith("reference/")) return anchor ? score : score - 5;
    return score + 15;
  },
  objNameMatch: 11,
  objPartialMatch: 6,
  objPrio: {0: 15, 1: 5, 2: -5},
  objPrioDefault: 0,
  title: 15,
  partialTitle: 7,
  term: 5,
  partialTerm: 2,
};
