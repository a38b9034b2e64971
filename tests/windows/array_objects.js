// A host whose arrays are objects, and which passes its variables by value.
//
//   array_objects.js <folder of the demo company>
var engine = new ActiveXObject("ArdSimulator.Engine");
engine.Open(WScript.Arguments(0));
var general = new ActiveXObject("ArdObjects100.General");
var products = new ActiveXObject("ArdObjects100.Products");
general.ArdWorkspace = products.ArdWorkspace = engine.Workspace;

function tell(what, list) {
  var text = what + " " + list.length + " ";
  for (var i = 0; i < list.length; ++i) text += "[" + list[i] + "]";
  WScript.Echo(text);
}

var lists = {full: ["", "text", null, 7], sparse: new Array(2), empty: [], like: {length: 2}};
for (var name in lists) {
  general.GetCategories(lists[name]);
  tell(name, lists[name]);
}
var codes = new Array(102);
codes[100] = "kept";
general.GetTaxCodes(codes);
tell("codes", codes.slice(99));
var others = {none: {}, text: "text", negative: {length: -1}};
for (var name in others) {
  try {
    general.GetCategories(others[name]);
  } catch (error) {
    WScript.Echo(name + " refused");
  }
}
products.GetAllocOnOrder("LOCK-CAM", null, undefined);
products.GetAllocOnOrder("LOCK-CAM", "", {});
WScript.Echo("done");
