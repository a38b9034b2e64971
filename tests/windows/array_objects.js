// A host whose arrays are objects, which passes its variables by value, and has objects hold outputs.
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
var user = {value: "MANAGER"}, station = {}, count = general.GetNumActiveUsersInclDet(user, station);
WScript.Echo("held " + count + " " + user.value + " " + station.value);
var supplier = {}, ordered = [], least = new String("7");
products.GetSupplierOnOrder("LOCK-CAM", supplier, ordered, least);
WScript.Echo("held " + supplier.value + typeof ordered.value + ordered.value + least.value);
products.GetSupplierOnOrder("none", supplier, ordered, least);
WScript.Echo("held " + supplier.value + ordered.value + least.value);
var field = engine.Workspace.CreateRecordObject("StockRecord").Fields.Item("DESCRIPTION");
field.Value = "a value, not a variable";
products.GetSupplierOnOrder("LOCK-CAM", field, "", null);
WScript.Echo(field.Value.replace(/ +$/, ""));
WScript.Echo("done");
