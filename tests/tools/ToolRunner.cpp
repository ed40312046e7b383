#include "ToolRunner.h"

#include "support/TalvoTest.h"

#include <talvo/containers/TalvoList.h>
#include <talvo/xml/TalvoXMLDocument.h>
#include <talvo/xml/TalvoXMLParser.h>
#include <talvo/xml/TalvoXMLTerm.h>

#include <cstdio>
#include <cstdlib>
#include <sys/wait.h>

namespace talvo_tool_test {

namespace {

// Single-quotes an argument for the shell.
std::string quoted(const std::string& argument) {
    std::string text = "'";
    for (char c : argument) {
        if (c == '\'')
            text += "'\\''";
        else
            text += c;
    }
    return text + "'";
}

}  // namespace

ToolRun runTool(const std::vector<std::string>& arguments, const std::string& input) {
    talvo_test::writeFile("tool.in", input);
    std::string command = quoted(TALVO_TOOL_PATH);
    for (const std::string& argument : arguments)
        command += " " + quoted(argument);
    command += " <tool.in >tool.out 2>tool.err";
    int raw = std::system(command.c_str());
    ToolRun run;
    run.out = talvo_test::readFile("tool.out");
    run.err = talvo_test::readFile("tool.err");
    run.status = WIFEXITED(raw) ? WEXITSTATUS(raw) : -1;
    return run;
}

std::string sampleFile(const char* name) { return std::string(TALVO_SOURCE_DIR) + "/examples/data/" + name; }

XmlReadBack readXmlBack(const char* path) {
    XmlReadBack back{1, "", 0};
    FILE* file = std::fopen(path, "rb");
    if (!file)
        return back;
    TalvoXMLDocument* document = new TalvoXMLDocument();
    TalvoXMLParser* parser = new TalvoXMLParser();
    back.result = parser->parseFile(document, file);
    std::fclose(file);
    TalvoListCursor* roots = document->newCursorOnRoots();
    for (roots->resetOnFirstItem(); !roots->isAfterLastItem(); roots->increment()) {
        TalvoXMLTerm* root = static_cast<TalvoXMLTerm*>(roots->getItem());
        if (root->isNode()) {
            back.rootTag = root->getTag();
            back.nodeChildren = root->getNumberOfNodeChildren();
            break;
        }
    }
    delete roots;
    delete parser;
    delete document;
    return back;
}

}  // namespace talvo_tool_test
