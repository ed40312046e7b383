// Parse an XML configuration, query it, print it back indented.
#include <talvo/talvo.h>

#include <cstdio>

static const char* const kConfiguration =
    "<?xml version=\"1.0\"?>\n"
    "<config>\n"
    "  <server host=\"localhost\" port=\"8080\"/>\n"
    "  <clock start=\"0\" stop=\"3600\">simulated seconds</clock>\n"
    "</config>\n";

static bool writeSample(const char* path) {
    FILE* out = std::fopen(path, "w");
    if (!out)
        return false;
    std::fputs(kConfiguration, out);
    return std::fclose(out) == 0;
}

int main() {
    TalvoMemoryManager::start();
    const char* path = "example-config.xml";
    if (!writeSample(path))
        return 1;

    FILE* in = std::fopen(path, "rb");
    TalvoXMLDocument* document = new TalvoXMLDocument();
    TalvoXMLParser* parser = new TalvoXMLParser();
    parser->setInputFileName(path);
    if (parser->parseFile(document, in) == 0) {  // else a report such as "SYNTAX ERROR [file, line 3]: ..."
        TalvoXMLTerm* clock = document->findRoot("config")->findChild("clock");
        std::printf("clock stops at %d\n", clock->getAttributeValueAsInt("stop"));
        document->print(stdout, 2);  // indented by two blanks
    }
    std::fclose(in);
    delete parser;
    delete document;
    std::remove(path);

    TalvoMemoryManager::stop();
    return TalvoMemoryManager::getAllocationBalance() == 0 ? 0 : 1;
}
