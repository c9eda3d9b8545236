#include "diff/GraphDiff.h"
#include "exchange/JsonText.h"
#include "kit/TreePrinter.h"

#include <ostream>

namespace diff {
namespace {

void printSingles(char const* what, std::vector<Single> const& singles, std::ostream& out) {
    for (Single const& single : singles) {
        out << what << ' ' << single.className << ' ' << exchange::printable(single.path) << '\n';
    }
}

void printPairs(char const* what, std::vector<Pair> const& pairs, std::ostream& out) {
    for (Pair const& pair : pairs) {
        out << what << ' ' << pair.className << ' ' << exchange::printable(pair.from) << " -> "
            << exchange::printable(pair.to) << '\n';
    }
}

void printLinks(LinkChange const& change, std::ostream& out) {
    for (std::string const& path : change.removed) {
        out << "    " << change.role << ": without " << exchange::printable(path) << '\n';
    }
    for (std::string const& path : change.added) {
        out << "    " << change.role << ": with " << exchange::printable(path) << '\n';
    }
    if (change.reordered) {
        out << "    " << change.role << ": in another order\n";
    }
}

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

void printPaths(std::vector<std::string> const& paths, std::ostream& out) {
    out << '[';
    char const* before = "";
    for (std::string const& path : paths) {
        out << before << exchange::jsonValue(path);
        before = ", ";
    }
    out << ']';
}

void printChange(Change const& change, std::ostream& out) {
    out << "{\"class\": \"" << change.className << "\", \"path\": " << exchange::jsonValue(change.path)
        << ", \"attributes\": [";
    char const* before = "";
    for (AttributeChange const& attribute : change.attributes) {
        out << before << "{\"name\": \"" << attribute.name
            << "\", \"from\": " << exchange::jsonValue(attribute.from)
            << ", \"to\": " << exchange::jsonValue(attribute.to) << '}';
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

void printText(Difference const& difference, std::ostream& out) {
    printSingles("removed", difference.removed, out);
    printSingles("added  ", difference.added, out);
    printPairs("renamed", difference.renamed, out);
    printPairs("moved  ", difference.moved, out);
    for (Change const& change : difference.changed) {
        out << "changed " << change.className << ' ' << exchange::printable(change.path) << '\n';
        for (AttributeChange const& attribute : change.attributes) {
            out << "    " << attribute.name << ": " << kit::quoted(attribute.from) << " -> "
                << kit::quoted(attribute.to) << '\n';
        }
        for (LinkChange const& link : change.links) {
            printLinks(link, out);
        }
    }
}

void printJson(Difference const& difference, std::ostream& out) {
    auto const single = [&out](Single const& each) {
        out << "{\"class\": \"" << each.className << "\", \"path\": " << exchange::jsonValue(each.path)
            << '}';
    };
    auto const pair = [&out](Pair const& each) {
        out << "{\"class\": \"" << each.className << "\", \"from\": " << exchange::jsonValue(each.from)
            << ", \"to\": " << exchange::jsonValue(each.to) << '}';
    };
    out << "{\n\"same\": " << (difference.none() ? "true" : "false");
    printList("removed", difference.removed, out, single);
    printList("added", difference.added, out, single);
    printList("renamed", difference.renamed, out, pair);
    printList("moved", difference.moved, out, pair);
    printList("changed", difference.changed, out, [&out](Change const& change) { printChange(change, out); });
    out << "\n}\n";
}

} // namespace diff
