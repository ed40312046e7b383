// talvo xml check|format|get: the library's XML parser and printer on files.
#include "Commands.h"
#include "ToolSupport.h"

#include <talvo/containers/TalvoList.h>
#include <talvo/text/TalvoFileStream.h>
#include <talvo/xml/TalvoXMLAttribute.h>
#include <talvo/xml/TalvoXMLDocument.h>
#include <talvo/xml/TalvoXMLParser.h>
#include <talvo/xml/TalvoXMLTerm.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>

namespace talvo_tool {

namespace {

// Parses `name` ("-" for standard input) into `document`. The parser writes
// its own report, naming the file, for a syntax error. Returns an exit status.
int parseInto(TalvoXMLDocument& document, const std::string& name) {
    bool isStandardInput = name == "-";
    FILE* file = isStandardInput ? stdin : std::fopen(name.c_str(), "rb");
    if (!file) {
        reportProblem("%s: %s", name.c_str(), std::strerror(errno));
        return ExitTrouble;
    }
    std::fflush(stdout);
    TalvoXMLParser parser;
    parser.setInputFileName(isStandardInput ? "(standard input)" : name.c_str());
    int failed = parser.parseFile(&document, file);
    bool readError = std::ferror(file) != 0;
    if (!isStandardInput)
        std::fclose(file);
    if (readError) {
        reportProblem("%s: cannot be read", name.c_str());
        return ExitTrouble;
    }
    return failed ? ExitFailure : ExitSuccess;
}

// The terms of a list of terms (roots or children), in order.
template <class Visit>
bool forEachTerm(TalvoListCursor* cursor, Visit visit) {
    bool stopped = false;
    for (cursor->resetOnFirstItem(); !stopped && !cursor->isAfterLastItem(); cursor->increment())
        stopped = visit(static_cast<TalvoXMLTerm*>(cursor->getItem()));
    delete cursor;
    return stopped;
}

// A path "a/b/c" selects nodes by tags from the top; "a/b@name" an attribute
// of such a node. The first match in document order wins.
class PathQuery {
public:
    explicit PathQuery(const std::string& path) {
        std::string nodes = path;
        std::size_t at = path.rfind('@');
        if (at != std::string::npos) {
            attribute = path.substr(at + 1);
            nodes = path.substr(0, at);
            hasAttribute = true;
        }
        std::size_t start = 0;
        while (start <= nodes.size()) {
            std::size_t slash = nodes.find('/', start);
            if (slash == std::string::npos)
                slash = nodes.size();
            if (slash > start)
                tags.push_back(nodes.substr(start, slash - start));
            start = slash + 1;
        }
    }

    bool isValid() const { return !(tags.empty() && !hasAttribute) && !(hasAttribute && attribute.empty()); }

    // The first node reached by the tags from the roots; when the path does
    // not name the root element, from the root element's children instead.
    TalvoXMLTerm* find(TalvoXMLDocument& document) {
        TalvoXMLTerm* found = nullptr;
        if (tags.empty()) {
            forEachTerm(document.newCursorOnRoots(), [&](TalvoXMLTerm* t) {
                if (t->isNode() && accepts(t))
                    found = t;
                return found != nullptr;
            });
            return found;
        }
        forEachTerm(document.newCursorOnRoots(), [&](TalvoXMLTerm* t) {
            found = descend(t, 0);
            return found != nullptr;
        });
        if (found)
            return found;
        forEachTerm(document.newCursorOnRoots(), [&](TalvoXMLTerm* root) {
            if (root->isNode())
                forEachTerm(root->newCursorOnChildren(), [&](TalvoXMLTerm* t) {
                    found = descend(t, 0);
                    return found != nullptr;
                });
            return found != nullptr;
        });
        return found;
    }

    // What the path selects on `node`: the attribute value, or its texts
    // (text and CDATA children joined by a blank).
    std::string valueOf(TalvoXMLTerm* node) {
        if (hasAttribute)
            return node->getAttributeValue(attribute.c_str());
        std::string value;
        forEachTerm(node->newCursorOnChildren(), [&](TalvoXMLTerm* t) {
            if ((t->isText() || t->isCDATA()) && t->getText()) {
                if (!value.empty())
                    value += ' ';
                value += t->getText();
            }
            return false;
        });
        // The parser keeps one blank for trailing white space.
        while (!value.empty() && value.back() == ' ')
            value.pop_back();
        return value;
    }

private:
    bool accepts(TalvoXMLTerm* node) { return !hasAttribute || node->getAttributeValue(attribute.c_str()); }

    TalvoXMLTerm* descend(TalvoXMLTerm* term, std::size_t depth) {
        if (!term->isNodeOfTag(tags[depth].c_str()))
            return nullptr;
        if (depth + 1 == tags.size())
            return accepts(term) ? term : nullptr;
        TalvoXMLTerm* found = nullptr;
        forEachTerm(term->newCursorOnChildren(), [&](TalvoXMLTerm* child) {
            found = descend(child, depth + 1);
            return found != nullptr;
        });
        return found;
    }

    std::vector<std::string> tags;
    std::string attribute;
    bool hasAttribute = false;
};

}  // namespace

int runXmlCheck(const XmlCheckOptions& options) {
    int status = ExitSuccess;
    for (const std::string& name : inputsOrStandardInput(options.files)) {
        TalvoXMLDocument document;
        int result = parseInto(document, name);
        if (result == ExitSuccess)
            std::printf("%s: ok\n", name == "-" ? "(standard input)" : name.c_str());
        status = std::max(status, result);
    }
    return status;
}

int runXmlFormat(const XmlFormatOptions& options) {
    TalvoXMLDocument document;
    int status = parseInto(document, options.file);
    if (status != ExitSuccess)
        return status;
    std::fflush(stdout);
    TalvoFileStream output(false, stdout);
    document.print(&output, options.indent);
    output.flush();
    return ExitSuccess;
}

int runXmlGet(const XmlGetOptions& options) {
    PathQuery query(options.path);
    if (!query.isValid()) {
        reportProblem("%s: not a path like server/port or server@port", options.path.c_str());
        return ExitTrouble;
    }
    TalvoXMLDocument document;
    int status = parseInto(document, options.file);
    if (status != ExitSuccess)
        return status;
    TalvoXMLTerm* node = query.find(document);
    if (!node)
        return ExitFailure;
    std::printf("%s\n", query.valueOf(node).c_str());
    return ExitSuccess;
}

}  // namespace talvo_tool
