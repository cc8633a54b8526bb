// What both matrices share: how much of them is run, where their random numbers come from, and the summary at the end.
#pragma once

#include <random>
#include <string>

namespace matrix {

// ZARN_MATRIX=whole runs every cell; otherwise a sample.
bool Whole();
// Rounds of each cell of the abort matrix: ZARN_ROUNDS, else 100 of the whole matrix and a few of a sample.
int Rounds();
// From ZARN_SEED, else from the clock; printed once so that a run can be repeated.
std::mt19937& Random();

// Counts a cell; what went wrong in it becomes a failure of the test and is listed again at the end.
class Cell {
  public:
    Cell(std::string matrix, std::string name) : matrix_(std::move(matrix)), name_(std::move(name)) {}
    ~Cell();
    Cell(const Cell&) = delete;
    Cell& operator=(const Cell&) = delete;
    // Notes `what` unless the condition holds.
    bool Check(bool condition, const std::string& what);

  private:
    std::string matrix_;
    std::string name_;
    std::string wrong_;
};

}  // namespace matrix
