// A workspace that writes down what the engine is asked, to assert the order of writes or to count
// the operations of a call.
#ifndef ARD_TESTING_RECORDING_WORKSPACE_H_
#define ARD_TESTING_RECORDING_WORKSPACE_H_

#include <memory>
#include <string>
#include <vector>

#include "engine/seam.h"

namespace ard::testing {

// A workspace that passes every operation on to `workspace`, and so do the objects created through
// it. Each operation first adds a line to `operations`, which must outlive them all:
//
//   Workspace.CreateRecordObject("StockRecord")
//   StockRecord.Fields
//   StockRecord.Fields("QTY_ALLOCATED")
//   StockRecord.Fields("QTY_ALLOCATED").Value
//   StockRecord.Fields("QTY_ALLOCATED").Value = 10
//   StockRecord.Find(False)
//   StockRecord.Transactions.MoveNext
//
// Values are as Value::ToText gives them, text in quotes; nothing is `Empty` or `Null`.
std::shared_ptr<engine::Workspace> Recorded(std::shared_ptr<engine::Workspace> workspace,
                                            std::vector<std::wstring>& operations);

}  // namespace ard::testing

#endif  // ARD_TESTING_RECORDING_WORKSPACE_H_
