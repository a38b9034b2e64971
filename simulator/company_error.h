// What is wrong with a company's files, and where.
#ifndef ARD_SIMULATOR_COMPANY_ERROR_H_
#define ARD_SIMULATOR_COMPANY_ERROR_H_

#include <stdexcept>
#include <string>
#include <utility>

namespace ard::simulator {

// what() reads "SalesData.table:12:8: ..." in UTF-8. Line and column count from 1, the column in
// characters; both are 0 when the error concerns the file as a whole.
class CompanyError : public std::runtime_error {
 public:
  CompanyError(const std::string& file, int line, int column, std::string problem)
      : runtime_error(Place(file, line, column) + problem),
        file_(file),
        line_(line),
        column_(column),
        problem_(std::move(problem)) {}

  const std::string& file() const { return file_; }
  int line() const { return line_; }
  int column() const { return column_; }
  const std::string& problem() const { return problem_; }

 private:
  static std::string Place(const std::string& file, int line, int column) {
    if (line == 0) return file + ": ";
    return file + ":" + std::to_string(line) + ":" + std::to_string(column) + ": ";
  }

  std::string file_;
  int line_;
  int column_;
  std::string problem_;
};

}  // namespace ard::simulator

#endif  // ARD_SIMULATOR_COMPANY_ERROR_H_
