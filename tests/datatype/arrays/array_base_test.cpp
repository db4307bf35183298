// ArrayBase and MinMaxArrayBase: normalised copies and their scope, equality and its bound, text, and
// the min/max scan with its cache.
#include "datatype/arrays/array_base.h"

#include <bit>
#include <cstdint>
#include <limits>
#include <string>
#include <vector>

#include "../support.h"
#include "cmdlanglib/literal.h"
#include "utillib/ut.h"

namespace {

using namespace graphics::datatype;
using State = MinMaxArrayBase::ScanState;

gui_objects::ZxArrayPtr literal(const char* text) { return text == nullptr ? nullptr : cmdlang::readLiteral(text); }

// An ArrayBase with a chosen comparison bound.
class Bounded : public ArrayBase {
 public:
  Bounded(const zxArray* array, unsigned limit) : ArrayBase(array), limit_(limit) {}
  unsigned getMaxNumberOfValuesToCompare() const override { return limit_; }

 private:
  unsigned limit_;
};

class ArrayBases : public orbtest::DataTypeTest {};

TEST_F(ArrayBases, HoldNormalisedCopiesSharingWhatCanBeShared) {
  struct Case {
    const char* given;
    const char* held;  // the held array as a literal
    bool sharesElements;
  };
  const Case cases[] = {
      {"reshape('',0,5)", "''", false},  // zero-row text becomes the empty string
      {"int16(zeros(3,0,2))", "zeros(3,0,2,'int16')", false}, {"sparse([0 2; 3 0])", "[0 2;3 0]", false},
      {"cell(0,0)", "{}", false}, {"[1 2 3]", "[1 2 3]", true}, {"complex([1 2],[3 4])", "complex([1 2],[3 4])", true},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.given);
    const gui_objects::ZxArrayPtr given = literal(c.given);
    const ArrayBase value(given.get());
    EXPECT_NE(value.getPtr(), given.get());
    EXPECT_EQ(cmdlang::writeLiteral(value.getPtr()), c.held);
    const gui_objects::ZxArrayPtr handedOut = ArrayBase(value).getSharedDataCopy();
    EXPECT_EQ(cmdlang::writeLiteral(handedOut.get()), c.held);
    if (c.sharesElements) {
      EXPECT_EQ(zxGetData(handedOut.get()), zxGetData(given.get()));
    }
  }
  EXPECT_EQ(ArrayBase(nullptr).getPtr(), nullptr);
  EXPECT_FALSE(ArrayBase().getSharedDataCopy());
}

TEST_F(ArrayBases, HeldArraysOutliveTheCallFrameTheyWereMadeIn) {
  ArrayBase kept;
  {
    zx::CallFrame call;
    const zxArray* input = zxCreateDoubleScalar(7);
    ArrayBase value(input);
    EXPECT_EQ(call.temporaryCount(), 1u);
    const gui_objects::ZxArrayPtr handedOut = value.getSharedDataCopy();
    EXPECT_EQ(call.temporaryCount(), 2u);
    kept = value;
    const ArrayBase& same = kept;  // assigned to itself through a reference, as aliasing code does
    kept = same;
  }
  EXPECT_EQ(zxGetScalar(kept.getPtr()), 7.0);
}

TEST_F(ArrayBases, EqualityComparesClassShapeAndElementsUpToTheBound) {
  struct Case {
    const char* a;
    const char* b;
    unsigned limit;
    bool equal;
  };
  // clang-format off
  const Case cases[] = {
      {nullptr, nullptr, 0, true},                    {nullptr, "zeros(0,0)", 10, false},
      {"zeros(0,3)", "zeros(0,3)", 0, true},          {"[1 2]", "[1 2]", 0, false},  // the base compares nothing
      {"[1 2]", "[1 2]", 2, true},                    {"[1 NaN]", "[1 NaN]", 2, false},
      {"zeros(2,3)", "zeros(3,2)", 6, false},         {"zeros(2,3)", "single(zeros(2,3))", 6, false},
      {"zeros(2,2,2)", "zeros(2,4)", 8, false},       {"int64(9007199254740993)", "int64(9007199254740992)", 1, false},
      {"'ab'", "'cd'", 2, true},  // text, cells and structs are not compared
  };
  // clang-format on
  for (const Case& c : cases) {
    SCOPED_TRACE(std::string(c.a ? c.a : "nothing") + " == " + (c.b ? c.b : "nothing"));
    const Bounded a(literal(c.a).get(), c.limit);
    const Bounded b(literal(c.b).get(), c.limit);
    EXPECT_EQ(a == b, c.equal);
  }
}

TEST_F(ArrayBases, TextComesFromTheRegisteredArrayToTextConversion) {
  EXPECT_EQ(ArrayBase().convert_to_string(), nullptr);
  char* text = ArrayBase(literal("[0 1; 2 3]").get()).convert_to_string();
  EXPECT_STREQ(text, "[0 1;2 3]");
  utFree(text);
}

TEST_F(ArrayBases, MinMaxScansOncePerKindOfQueryAndCopiesKeepTheCache) {
  const double inf = std::numeric_limits<double>::infinity();
  const double none = std::bit_cast<double>(std::uint64_t{0xFFF8000000000000});
  struct Query {
    bool stopAtNonFinite;
    double min, max;
    State state;
  };
  struct Case {
    const char* values;
    bool hasFinite;              // of a fresh value: no element is non-finite
    std::vector<Query> queries;  // in order, on one value
  };
  const Case cases[] = {
      {nullptr, true, {{false, none, none, State::empty}}},
      {"zeros(0,3)", true, {{true, none, none, State::empty}}},
      {"int8([-5 7 0])", true, {{true, -5, 7, State::allFinite}}},
      {"{1}", true, {{true, 0, 0, State::allFinite}}},
      {"[1 NaN 3]", false, {{false, 1, 3, State::someNonFinite}, {true, 1, 3, State::someNonFinite}}},
      {"[1 Inf 3]", false, {{true, none, none, State::stoppedAtNonFinite},
                            {true, none, none, State::stoppedAtNonFinite}, {false, 1, 3, State::someNonFinite}}},
      {"[Inf -Inf]", false, {{false, inf, -inf, State::someNonFinite}}},
  };
  const auto bits = [](double x) { return std::bit_cast<std::uint64_t>(x); };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.values ? c.values : "nothing");
    const gui_objects::ZxArrayPtr array = literal(c.values);
    EXPECT_EQ(MinMaxArrayBase(array.get()).hasFinite(), c.hasFinite);
    MinMaxArrayBase value(array.get());
    EXPECT_EQ(value.getScanState(), State::notScanned);
    for (const Query& q : c.queries) {
      double min = 0, max = 0;
      value.getMinMax(min, max, q.stopAtNonFinite);
      EXPECT_EQ(bits(min), bits(q.min)) << min;
      EXPECT_EQ(bits(max), bits(q.max)) << max;
      EXPECT_EQ(value.getScanState(), q.state);
    }
    MinMaxArrayBase assigned;
    assigned = value;  // copies, by construction and by assignment, keep the cache
    EXPECT_EQ(MinMaxArrayBase(value).getScanState(), c.queries.back().state);
    EXPECT_EQ(assigned.getScanState(), c.queries.back().state);
  }
}

}  // namespace
