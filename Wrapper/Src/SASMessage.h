// A message between a page and the application on the common-interface module (CI Plus, Specific Application
// Support), as the module sends it.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

// The bytes, all numbers big-endian: command id (1), CA system id (2), transaction id (4), number of items
// (1), and each item as datatype id (1), length (2), that many bytes. Any byte string can be given; one that
// is cut short, or that goes on after its last item, is not valid and has no items.
class SASMessage {
 public:
    enum ECommand : uint8_t {
        E_SEND_MESSAGE = 1,
        E_REPLY_MESSAGE = 2,
        E_PARENTAL_CONTROL_INFO = 3,
        E_RIGHTS_INFO = 4,
        E_SYSTEM_INFO = 5,
    };

    // What the items are. In E_PARENTAL_CONTROL_INFO a country holds for the ratings after it; a rating is a
    // type and, after it, a value; the access status is there once: SASParentalControl reads them.
    // SASDrmMessage reads the others.
    enum EDatatype : uint8_t {
        // The module's own bytes.
        E_CA_VENDOR_DATA = 1,
        // Three characters of ISO 3166-1.
        E_COUNTRY_CODE = 2,
        // Text: where the user is asked for the PIN.
        E_PARENTAL_CONTROL_URL = 3,
        // One byte of ERatingType.
        E_RATING_TYPE = 4,
        // One byte. Of a DVB rating 1 to 15, which is the least age less three, or 0 for no rating.
        E_RATING_VALUE = 5,
        // One byte: 0 blocked, 1 granted.
        E_ACCESS_STATUS = 7,
        // One byte: the result code of a DRM message, 0 to 6.
        E_STATUS = 8,
    };

    enum ERatingType : uint8_t {
        E_RATING_DVB = 0,  // as in the parental rating descriptor of DVB service information
    };

    struct Item {
        uint8_t datatypeId = 0;
        std::string bytes;
    };

    explicit SASMessage(std::span<const uint8_t> message);

    [[nodiscard]] bool IsValid() const { return m_valid; }

    // All 0 in a message that is not valid. The command may be none of ECommand.
    [[nodiscard]] uint8_t CommandId() const { return m_commandId; }
    [[nodiscard]] uint16_t CaSystemId() const { return m_caSystemId; }
    [[nodiscard]] uint32_t TransactionId() const { return m_transactionId; }
    [[nodiscard]] const std::vector<Item>& Items() const { return m_items; }

    // The first item of the type, or null.
    [[nodiscard]] const Item* Find(uint8_t datatypeId) const;

 private:
    bool m_valid = false;
    uint8_t m_commandId = 0;
    uint16_t m_caSystemId = 0;
    uint32_t m_transactionId = 0;
    std::vector<Item> m_items;
};
