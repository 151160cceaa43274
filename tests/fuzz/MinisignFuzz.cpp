// SPDX-License-Identifier: GPL-3.0-or-later
// Signature and key files from anywhere: refused with a sentence, or of the right sizes; and none that was not made
// by the key fits it.
#include "update/web/Minisign.h"

#include <QBuffer>

#include <cstdlib>

namespace {

const QByteArray kPublicKey = "untrusted comment: minisign public key B65828CFCF6D263\n"
                              "RWRj0vb8jIJlCwuNJmDAlsXVAOcHRlhG/L4lprNScHK37b6hWogmoBvi\n";

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const QByteArray text(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    const auto key = minisign::readPublicKey(text);
    if (key ? key.value().id.size() != 8 || key.value().key.size() != 32 : key.sentence().isEmpty())
        std::abort();
    const auto signature = minisign::readSignature(text);
    if (!signature) {
        if (signature.sentence().isEmpty())
            std::abort();
        return 0;
    }
    const minisign::Signature& read = signature.value();
    if (read.id.size() != 8 || read.signature.size() != 64 || read.commentSignature.size() != 64)
        std::abort();
    // Nobody has ever signed this.
    QByteArray content = "never signed";
    QBuffer device(&content);
    if (!device.open(QBuffer::ReadOnly) ||
        minisign::verify(device, read, {minisign::readPublicKey(kPublicKey).value()}))
        std::abort();
    return 0;
}
