// TalvoXMLAttribute: one name="value" pair of an XML node.
//
// Layout: two owned, separately allocated raw strings, `_name` and `_value`.
// Values are always held as text; the typed operations convert on each call
// and the typed setters store the formatted text ("%d", "%g", "true"/"false").
// Invariant: both strings are private copies freed by the destructor.
#pragma once

#include <talvo/foundation/TalvoExport.h>
#include <talvo/foundation/TalvoObject.h>

class TALVO_API TalvoXMLAttribute : public TalvoObject<TalvoXMLAttribute> {
public:
    static constexpr const char* ClassName = "TalvoXMLAttribute";

    // Copies of `name` and `value` (a null argument stays null).
    TalvoXMLAttribute(const char* name, const char* value);
    // The value formatted with "%d".
    TalvoXMLAttribute(const char* name, int value);
    // The value formatted with "%g" (six significant digits).
    TalvoXMLAttribute(const char* name, double value);
    ~TalvoXMLAttribute();
    TalvoXMLAttribute(const TalvoXMLAttribute&) = delete;
    TalvoXMLAttribute& operator=(const TalvoXMLAttribute&) = delete;

    // Deletes an attribute given as an Item; null is accepted.
    static void free(void* attribute);

    // The stored strings, owned by the attribute (may be null).
    const char* getName() const { return _name; }
    const char* getValue() const { return _value; }

    // Replaces the value by a copy of `value`.
    void setValue(const char* value);

    // True when the value is exactly "true" or "false" (case matters).
    bool isBool() const;
    // True when the value is exactly "true".
    bool getValueAsBool() const;
    // Stores "true" or "false".
    void setValueAsBool(bool value);

    // The raw-string integer recogniser applied to the value.
    bool isInt() const;
    // atoi of the value (0 for a null value).
    int getValueAsInt() const;
    // Stores the value formatted with "%d".
    void setValueAsInt(int value);

    // The raw-string real recogniser applied to the value.
    bool isDouble() const;
    // atof of the value (0.0 for a null value).
    double getValueAsDouble() const;
    // Stores the value formatted with "%g".
    void setValueAsDouble(double value);

private:
    void _replaceValue(char* value);

    char* _name;
    char* _value;
};
