#pragma once

#include <cstdint>
#include <limits>
#include <memory>
#include <string>

#include "../Platform/Export.h"

#include "Vellum/CException.h"

namespace Vellum
{

/// What a CDocumentException tells beside its class. All texts are UTF-8.
struct SDocumentFailure
{
    std::string reason;       ///< One English sentence
    std::string path = {};    ///< Of the field or element, as in `lines[3].price`; empty for the whole document
    std::string file = {};    ///< Of Save and Load; empty otherwise
    std::uint32_t line = 0;   ///< In a text document, the first is 1; 0 where it isn't known
    std::uint32_t column = 0; ///< In bytes, the first is 1; 0 where it isn't known
    std::uint64_t offset = UnknownOffset; ///< In bytes from the beginning of the document

    /// Stands for an offset that isn't known.
    static constexpr std::uint64_t UnknownOffset = std::numeric_limits<std::uint64_t>::max();
};

/// CDocumentException: a document that can't be taken as what it is to be, or a value that can't be stored. Raised by
/// CValue, by the operations of Describe/Documents.h and Describe/Files.h, and by what they call.
///
/// - **Memory** Copies share their texts, which live as long as one of them.
class VELLUM_API CDocumentException : public CException
{
public:
    /// Source file, line and fully qualified name of the raising function, as for any CException.
    CDocumentException(const char* file, unsigned int line, const char* function, SDocumentFailure failure);
    CDocumentException(const CDocumentException& other) noexcept;
    CDocumentException& operator=(const CDocumentException& other) noexcept;
    ~CDocumentException() override;

    std::unique_ptr<IException> Clone() const override;

    /// All that it tells in one line, as far as it is known: "Vellum::FromJson: order.json, lines[3].price, line 7,
    /// column 12: The number 300 isn't between -128 and 127."
    const char* what() const noexcept override;

    /// @name GetReason ... GetColumn
    /// The fields of SDocumentFailure. The texts live as long as this exception or a copy of it.
    /// @{
    const char* GetReason() const;
    const char* GetPath() const;
    const char* GetFile() const;
    std::uint32_t GetLine() const;
    std::uint32_t GetColumn() const;
    /// @}

    /// All of it.
    const SDocumentFailure& GetFailure() const;

private:
    struct STold;

    std::shared_ptr<const STold> told;
};

} // namespace Vellum
