#include "diff/GraphDiff.h"
#include "kit/JsonText.h"
#include "kit/TreePrinter.h"

#include <algorithm>
#include <map>
#include <ostream>
#include <tuple>

namespace diff {
namespace {

// ---- as text --------------------------------------------------------------------------------------------

constexpr char const* plain = "\x1b[0m";
constexpr char const* bold = "\x1b[1m";

char const* colorOf(char sign) {
    switch (sign) {
    case '+':
        return "\x1b[32m";
    case '-':
        return "\x1b[31m";
    case '~':
        return "\x1b[33m";
    default:
        return "\x1b[36m";
    }
}

struct Line {
    char sign;
    std::string text;
};

bool startsCharacter(char byte) {
    return (static_cast<unsigned char>(byte) & 0xc0) != 0x80;
}

/// Shortens two long texts to the part in which they differ and a few characters around it.
void shorten(std::string& from, std::string& to) {
    constexpr std::size_t longest = 60;
    constexpr std::size_t context = 20;
    if (from.size() <= longest && to.size() <= longest) {
        return;
    }
    std::size_t const least = std::min(from.size(), to.size());
    std::size_t front = 0;
    while (front < least && from[front] == to[front]) {
        ++front;
    }
    std::size_t back = 0;
    while (back < least - front && from[from.size() - 1 - back] == to[to.size() - 1 - back]) {
        ++back;
    }
    front = front > context ? front - context : 0;
    back = back > context ? back - context : 0;
    for (std::string* text : {&from, &to}) {
        std::size_t begin = front;
        while (begin > 0 && begin < text->size() && !startsCharacter((*text)[begin])) {
            --begin;
        }
        std::size_t end = text->size() - back;
        while (end < text->size() && !startsCharacter((*text)[end])) {
            ++end;
        }
        std::string const middle = text->substr(begin, end - begin);
        *text = (begin > 0 ? "..." : "") + middle + (end < text->size() ? "..." : "");
    }
}

/// The last step of a path: what follows the last slash that isn't part of a name.
std::string lastStepOf(std::string const& path) {
    std::size_t start = 0;
    for (std::size_t i = 0; i < path.size(); ++i) {
        if (path[i] == '\\') {
            ++i;
        } else if (path[i] == '/') {
            start = i + 1;
        }
    }
    return path.substr(start);
}

/// The changes of one class, table, view or package.
struct Chapter {
    bool isAdded = false;
    std::vector<Line> lines;
};

class Text {
public:
    Text(bool colored, std::ostream& stream) : inColor(colored), out(stream) {}

    void add(Difference const& difference) {
        rootName = difference.rootAfter;
        for (Single const& single : difference.removed) {
            addSingle('-', single);
        }
        for (Single const& single : difference.added) {
            addSingle('+', single);
        }
        for (Pair const& pair : difference.renamed) {
            add(pair.place, '>', subjectOf(pair) + "is renamed from " + lastStepOf(pair.from));
        }
        for (Pair const& pair : difference.moved) {
            add(pair.place, '>', subjectOf(pair) + "is moved from " + pair.from);
        }
        for (Change const& change : difference.changed) {
            std::size_t const before = lineCount;
            addChange(change);
            changed += lineCount > before;
        }
    }

    void print(Difference const& difference) {
        for (auto const& [key, chapter] : chapters) {
            auto const& [path, className, gone] = key;
            char const sign = gone ? '-' : chapter.isAdded ? '+' : ' ';
            std::string const heading = className + " " + kit::printable(path == "/" ? rootName : path);
            if (sign == ' ') {
                print(bold, heading);
            } else {
                print(colorOf(sign), std::string(1, sign) + " " + heading);
            }
            for (Line const& line : chapter.lines) {
                out << "  ";
                print(colorOf(line.sign), std::string(1, line.sign) + " " + kit::printable(line.text));
            }
        }
        out << '\n'
            << difference.added.size() << " added, " << difference.removed.size() << " removed, "
            << difference.renamed.size() << " renamed, " << difference.moved.size() << " moved, " << changed
            << " changed\n";
    }

private:
    using Key = std::tuple<std::string, std::string, bool>;

    void print(char const* color, std::string const& text) {
        if (inColor) {
            out << color << text << plain << '\n';
        } else {
            out << text << '\n';
        }
    }

    Chapter& chapter(Place const& place) { return chapters[{place.path, place.className, place.gone}]; }

    void add(Place const& place, char sign, std::string const& text) {
        chapter(place).lines.push_back({sign, text});
        ++lineCount;
    }

    /// Class and path of an object; the class isn't repeated if the path has it.
    static std::string labelOf(std::string const& className, Place const& place) {
        bool const saysClass =
            lastStepOf(place.within).compare(0, className.size() + 1, className + ":") == 0;
        return saysClass ? place.within : className + " " + place.within;
    }

    static std::string subjectOf(Pair const& pair) {
        return pair.place.within.empty() ? "" : labelOf(pair.className, pair.place) + " ";
    }

    void addSingle(char sign, Single const& single) {
        std::string const details = single.details.empty() ? "" : "  (" + single.details + ")";
        if (!single.place.within.empty()) {
            add(single.place, sign, labelOf(single.className, single.place) + details);
        } else {
            chapter(single.place).isAdded = sign == '+';
        }
    }

    void addChange(Change const& change) {
        Place const& place = change.place;
        std::string const subject = place.within.empty() ? "" : labelOf(change.className, place) + ": ";
        for (AttributeChange const& attribute : change.attributes) {
            std::string from = attribute.from;
            std::string to = attribute.to;
            if (attribute.isText) {
                shorten(from, to);
                from = kit::quoted(from);
                to = kit::quoted(to);
            }
            add(place, '~', subject + attribute.name + " " + from + " -> " + to);
        }
        for (LinkChange const& link : change.links) {
            addLinks(place, subject + link.role, link);
        }
    }

    void addLinks(Place const& place, std::string const& subject, LinkChange const& change) {
        if (change.isUnary && change.removed.size() == 1 && change.added.size() == 1) {
            add(place, '~',
                subject + " " + near(place, change.removed[0].path) + " -> " +
                    near(place, change.added[0].path));
        } else {
            addLinks(place, subject + " without ", change.removed);
            addLinks(place, subject + " with ", change.added);
        }
        if (change.reordered) {
            add(place, '~', subject + " in another order");
        }
    }

    void addLinks(Place const& place, std::string const& what, std::vector<LinkedObject> const& objects) {
        for (LinkedObject const& object : objects) {
            if (!object.alone) {
                add(place, '~', what + near(place, object.path));
            }
        }
    }

    /// A path, without the path of the place if it begins with that.
    static std::string near(Place const& place, std::string const& path) {
        bool const within = path.compare(0, place.path.size() + 1, place.path + "/") == 0;
        return within ? path.substr(place.path.size() + 1) : path;
    }

    std::map<Key, Chapter> chapters;
    std::string rootName;
    std::size_t lineCount = 0;
    std::size_t changed = 0; ///< the number of objects that have a line
    bool inColor;
    std::ostream& out;
};

// ---- as JSON --------------------------------------------------------------------------------------------

/// Writes a JSON array, an element a line.
template <class Element, class Write>
void printList(char const* key, std::vector<Element> const& elements, std::ostream& out, Write write) {
    out << ",\n\"" << key << "\": [";
    char const* before = "\n";
    for (Element const& element : elements) {
        out << before;
        write(element);
        before = ",\n";
    }
    out << (elements.empty() ? "]" : "\n]");
}

void printPaths(std::vector<LinkedObject> const& objects, std::ostream& out) {
    out << '[';
    char const* before = "";
    for (LinkedObject const& object : objects) {
        out << before << kit::jsonValue(object.path);
        before = ", ";
    }
    out << ']';
}

void printChange(Change const& change, std::ostream& out) {
    out << "{\"class\": \"" << change.className << "\", \"path\": " << kit::jsonValue(change.path)
        << ", \"attributes\": [";
    char const* before = "";
    for (AttributeChange const& attribute : change.attributes) {
        out << before << "{\"name\": \"" << attribute.name
            << "\", \"from\": " << kit::jsonValue(attribute.from)
            << ", \"to\": " << kit::jsonValue(attribute.to) << '}';
        before = ", ";
    }
    out << "], \"links\": [";
    before = "";
    for (LinkChange const& link : change.links) {
        out << before << "{\"role\": \"" << link.role << "\", \"removed\": ";
        printPaths(link.removed, out);
        out << ", \"added\": ";
        printPaths(link.added, out);
        out << ", \"reordered\": " << (link.reordered ? "true" : "false") << '}';
        before = ", ";
    }
    out << "]}";
}

} // namespace

void printText(Difference const& difference, bool inColor, std::ostream& out) {
    if (difference.none()) {
        return;
    }
    Text text(inColor, out);
    text.add(difference);
    text.print(difference);
}

void printJson(Difference const& difference, std::ostream& out) {
    auto const single = [&out](Single const& each) {
        out << "{\"class\": \"" << each.className << "\", \"path\": " << kit::jsonValue(each.path) << '}';
    };
    auto const pair = [&out](Pair const& each) {
        out << "{\"class\": \"" << each.className << "\", \"from\": " << kit::jsonValue(each.from)
            << ", \"to\": " << kit::jsonValue(each.to) << '}';
    };
    out << "{\n\"same\": " << (difference.none() ? "true" : "false");
    out << ",\n\"roots\": {\"from\": " << kit::jsonValue(difference.rootBefore)
        << ", \"to\": " << kit::jsonValue(difference.rootAfter) << '}';
    printList("removed", difference.removed, out, single);
    printList("added", difference.added, out, single);
    printList("renamed", difference.renamed, out, pair);
    printList("moved", difference.moved, out, pair);
    printList("changed", difference.changed, out, [&out](Change const& change) { printChange(change, out); });
    out << "\n}\n";
}

} // namespace diff
