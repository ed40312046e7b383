/// @file
/// talvo: the umbrella header. Includes every public header of the library.
#pragma once

// Foundation
#include <talvo/foundation/TalvoExport.h>
#include <talvo/foundation/TalvoCallbacks.h>
#include <talvo/foundation/TalvoMemoryManager.h>
#include <talvo/foundation/TalvoObject.h>
#include <talvo/foundation/TalvoFunction.h>
#include <talvo/foundation/TalvoInteger.h>
#include <talvo/foundation/TalvoComparator.h>
#include <talvo/foundation/TalvoCursor.h>
#include <talvo/foundation/TalvoMath.h>
#include <talvo/foundation/TalvoRawString.h>

// Containers
#include <talvo/containers/TalvoList.h>
#include <talvo/containers/TalvoArray.h>
#include <talvo/containers/TalvoAVLTree.h>
#include <talvo/containers/TalvoHashTable.h>
#include <talvo/containers/TalvoHandle.h>
#include <talvo/containers/TalvoDictionary.h>

// Dynamic values
#include <talvo/values/TalvoConstant.h>
#include <talvo/values/TalvoAttribute.h>
#include <talvo/values/TalvoAttributeList.h>

// Text and streams
#include <talvo/text/TalvoCharBuffer.h>
#include <talvo/text/TalvoUTF8Char.h>
#include <talvo/text/TalvoUTF8Buffer.h>
#include <talvo/text/TalvoUTF8String.h>
#include <talvo/text/TalvoStream.h>
#include <talvo/text/TalvoFileStream.h>
#include <talvo/text/TalvoRawStringStream.h>
#include <talvo/text/TalvoFile.h>

// XML
#include <talvo/xml/TalvoXMLTerm.h>
#include <talvo/xml/TalvoXMLAttribute.h>
#include <talvo/xml/TalvoXMLDocument.h>
#include <talvo/xml/TalvoXMLPrinter.h>
#include <talvo/xml/TalvoXMLParserMessenger.h>
#include <talvo/xml/TalvoXMLParser.h>

// Regular expressions
#include <talvo/regex/TalvoRegex.h>
#include <talvo/regex/TalvoRegexManager.h>

// Statistics
#include <talvo/stats/TalvoRandomizer.h>
#include <talvo/stats/TalvoQuantilizer.h>
#include <talvo/stats/TalvoBinTable.h>
#include <talvo/stats/TalvoMeasure.h>
#include <talvo/stats/TalvoDoubleVector.h>
#include <talvo/stats/TalvoTimer.h>
#include <talvo/stats/TalvoCurve.h>
#include <talvo/stats/TalvoChronogram.h>
