#pragma once

#include <QString>

#include <cstddef>
#include <optional>
#include <vector>

namespace kestrum::text {

// The field destinations ({\field{\*\fldinst HYPERLINK "..."}{\fldrslt ...}}), nested fields
// included: each field lives as long as the group that opened it.
class RtfFieldStack
{
public:
    // \field at group depth `depth`.
    void open(std::size_t depth) { m_fields.push_back({depth, {}}); }
    // The text of an instruction group, added to the innermost field.
    void addInstruction(const QString& text);
    // The group at `depth` closes: the fields it opened end.
    void close(std::size_t depth);
    // The link target of the innermost field when it is a hyperlink ("target#bookmark").
    std::optional<QString> hyperlink() const;

private:
    struct Field
    {
        std::size_t depth;
        QString instruction;
    };
    std::vector<Field> m_fields;
};

} // namespace kestrum::text
