#include <talvo/xml/TalvoXMLDocument.h>

#include <talvo/containers/TalvoList.h>
#include <talvo/foundation/TalvoRawString.h>
#include <talvo/text/TalvoFileStream.h>
#include <talvo/xml/TalvoXMLParser.h>
#include <talvo/xml/TalvoXMLPrinter.h>
#include <talvo/xml/TalvoXMLTerm.h>

TalvoXMLDocument::TalvoXMLDocument() : _docType(nullptr), _roots(new TalvoList()) {}

TalvoXMLDocument::~TalvoXMLDocument() {
    if (_docType)
        TalvoRawString::free(_docType);
    reset();
    delete _roots;
}

void TalvoXMLDocument::free(void* document) {
    if (document)
        delete static_cast<TalvoXMLDocument*>(document);
}

void TalvoXMLDocument::setDocType(const char* docType) {
    if (_docType)
        TalvoRawString::free(_docType);
    _docType = TalvoRawString::copy(docType);
}

TalvoListCursor* TalvoXMLDocument::newCursorOnRoots() {
    return _roots ? _roots->newCursor() : nullptr;
}

void TalvoXMLDocument::addRoot(TalvoXMLTerm* root) {
    if (root && _roots)
        _roots->insertItemLast(root);
}

TalvoXMLTerm* TalvoXMLDocument::findRoot(const char* tag) {
    if (!_roots)
        return nullptr;
    TalvoListCursor* cursor = _roots->newCursor();
    TalvoXMLTerm* found = nullptr;
    for (cursor->resetOnFirstItem(); !cursor->isAfterLastItem(); cursor->increment()) {
        auto* root = static_cast<TalvoXMLTerm*>(cursor->getItem());
        if (root && root->compareTag(tag) == 0) {
            found = root;
            break;
        }
    }
    delete cursor;
    return found;
}

void TalvoXMLDocument::reset() {
    if (_roots)
        _roots->deleteItems(TalvoXMLTerm::free);
}

void TalvoXMLDocument::load(FILE* file) {
    TalvoXMLParser* parser = new TalvoXMLParser();
    if (!parser)
        return;
    parser->parseFile(this, file);
    delete parser;
}

void TalvoXMLDocument::print(TalvoStream* stream, int indentation) {
    if (!stream)
        return;
    TalvoXMLPrinter* printer = new TalvoXMLPrinter();
    if (!printer)
        return;
    printer->setIndentation(indentation);
    printer->printDocument(this, stream);
    delete printer;
}

void TalvoXMLDocument::print(FILE* file, int indentation) {
    if (!file)
        return;
    TalvoFileStream* stream = new TalvoFileStream(false, file);
    if (!stream)
        return;
    print(stream, indentation);
    stream->close();
    delete stream;
}
