#include "ZentuExpressionArithmetic.h"

#include <algorithm>
#include <cctype>
#include <cstdlib>

#include "ZentuStringUtil.h"
#include "checks/ZentuExpressionWeights.h"

namespace ZentuExpressionArithmetic {

namespace {

// A linear combination with its span in the text: a constant and a weight per reference.
struct Linear {
    double constant = 0.0;
    ZentuExpressionWeights terms;
    std::size_t begin = 0;
    std::size_t end = 0;

    bool HasTerms() const { return !terms.Totals().empty(); }
};

// Adds the other's terms, scaled, keeping the order of first appearance.
void add_scaled(Linear& into, const Linear& other, double scale) {
    into.constant += scale * other.constant;
    for (const auto& [name, weight] : other.terms.Totals()) {
        into.terms.Add(name, scale * weight);
    }
}

void scale_by(Linear& value, double factor) {
    value.constant *= factor;
    for (auto& term : value.terms.Totals()) {
        term.second *= factor;
    }
}

// A recursive-descent reader of the usual precedence: sums of products of powers of signed
// primaries, left to right within a level.
class Parser {
  public:
    explicit Parser(const std::string& text) : text_(text) {}

    Reading Read() {
        SkipBlanks();
        if (position_ == text_.size()) {
            reading_.unsupported.push_back({0, text_.size(), "an empty expression"});
            return reading_;
        }
        Linear value = Sum();
        if (reading_.tooDeep) {
            return Reading{{}, {}, true};
        }
        // A constant beside references was reported where it stands.
        if (value.constant != 0.0 && !value.HasTerms()) {
            reading_.unsupported.push_back({value.begin, value.end, "a constant term"});
        }
        reading_.weights = std::move(value.terms.Totals());
        return reading_;
    }

  private:
    Linear Sum() {
        Linear value = Product();
        while (Peek() == '+' || Peek() == '-') {
            const double sign = Take() == '+' ? 1.0 : -1.0;
            Linear next = Product();
            ReportConstantTerm(value, next);
            add_scaled(value, next, sign);
            value.end = next.end;
        }
        return value;
    }

    // A number added to references is a constant term; one number alone is judged at the end.
    void ReportConstantTerm(const Linear& left, const Linear& right) {
        for (const Linear* side : {&left, &right}) {
            if (!side->HasTerms() && side->constant != 0.0 &&
                (left.HasTerms() || right.HasTerms())) {
                reading_.unsupported.push_back({side->begin, side->end, "a constant term"});
            }
        }
    }

    Linear Product() {
        Linear value = Power();
        while (Peek() == '*' || Peek() == '/') {
            const std::size_t at = position_;
            const char op = Take();
            Linear next = Power();
            if (op == '/') {
                reading_.unsupported.push_back({at, at + 1, "a quotient"});
                value.end = next.end;
                continue;
            }
            value = Multiply(std::move(value), std::move(next));
        }
        return value;
    }

    Linear Multiply(Linear left, Linear right) {
        if (left.HasTerms() && right.HasTerms()) {
            reading_.unsupported.push_back({left.begin, right.end, "a product of two references"});
        }
        const std::size_t begin = left.begin;
        if (!right.HasTerms()) {
            scale_by(left, right.constant);
            left.end = right.end;
            return left;
        }
        Linear product = std::move(right);
        scale_by(product, left.HasTerms() ? 1.0 : left.constant);
        product.begin = begin;
        return product;
    }

    Linear Power() {
        Linear value = Signed();
        while (Peek() == '^') {
            const std::size_t at = position_;
            Take();
            const Linear exponent = Signed();
            reading_.unsupported.push_back({at, at + 1, "a power"});
            value.end = exponent.end;
        }
        return value;
    }

    // Signs before a primary are read in a loop, so that a thousand of them nest nothing.
    Linear Signed() {
        const std::size_t begin = position_;
        double sign = 1.0;
        while (Peek() == '+' || Peek() == '-') {
            sign *= Take() == '+' ? 1.0 : -1.0;
        }
        Linear value = Primary();
        scale_by(value, sign);
        value.begin = begin;
        return value;
    }

    Linear Primary() {
        Linear value;
        value.begin = position_;
        const char next = Peek();
        if (next == '(') {
            const std::size_t open = position_;
            Take();
            if (++depth_ > MAX_DEPTH) {
                reading_.tooDeep = true;
                position_ = text_.size();
                return value;
            }
            value = Sum();
            --depth_;
            value.begin = open;
            if (Peek() == ')') {
                Take();
            }
        } else if (next == '%') {
            const std::size_t close = text_.find('%', position_ + 1);
            const std::size_t end = close == std::string::npos ? text_.size() : close + 1;
            const std::string name =
                ZentuStringUtil::to_upper(text_.substr(position_ + 1, end - position_ - 2));
            value.terms.Add(name, 1.0);
            position_ = end;
        } else {
            char* stop = nullptr;
            value.constant = std::strtod(text_.c_str() + position_, &stop);
            position_ = std::max(position_ + 1, static_cast<std::size_t>(stop - text_.c_str()));
        }
        value.end = position_;
        SkipBlanks();
        return value;
    }

    char Peek() {
        SkipBlanks();
        return position_ < text_.size() ? text_[position_] : '\0';
    }

    char Take() {
        const char taken = text_[position_++];
        SkipBlanks();
        return taken;
    }

    void SkipBlanks() {
        while (position_ < text_.size() &&
               std::isspace(static_cast<unsigned char>(text_[position_])) != 0) {
            ++position_;
        }
    }

    const std::string& text_;
    std::size_t position_ = 0;
    std::size_t depth_ = 0;
    Reading reading_;
};

}  // namespace

Reading read(const std::string& text) {
    return Parser(text).Read();
}

}  // namespace ZentuExpressionArithmetic
