// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>

#include <array>
#include <sodium.h>

/// A key of the test's own that signs as the minisign program does.
class SigningKey
{
public:
    SigningKey()
    {
        if (sodium_init() < 0)
            std::abort();
        crypto_sign_keypair(m_public.data(), m_secret.data());
        randombytes_buf(m_id.data(), m_id.size());
    }

    QByteArray publicKeyText() const
    {
        return "untrusted comment: a key for tests\n" + ("Ed" + raw(m_id) + raw(m_public)).toBase64() + '\n';
    }

    QByteArray sign(const QByteArray& content, bool prehashed = true,
                    const QByteArray& comment = "timestamp:1\tfile:x") const
    {
        QByteArray message = content;
        if (prehashed) {
            message = QByteArray(64, '\0');
            crypto_generichash(reinterpret_cast<unsigned char*>(message.data()), 64,
                               reinterpret_cast<const unsigned char*>(content.constData()),
                               static_cast<unsigned long long>(content.size()), nullptr, 0);
        }
        const QByteArray signature = signature64(message);
        return "untrusted comment: a signature for tests\n" +
               ((prehashed ? "ED" : "Ed") + raw(m_id) + signature).toBase64() + "\ntrusted comment: " + comment + '\n' +
               signature64(signature + comment).toBase64() + '\n';
    }

private:
    template <std::size_t Size>
    static QByteArray raw(const std::array<unsigned char, Size>& bytes)
    {
        return QByteArray(reinterpret_cast<const char*>(bytes.data()), Size);
    }
    QByteArray signature64(const QByteArray& message) const
    {
        QByteArray signature(crypto_sign_BYTES, '\0');
        crypto_sign_detached(reinterpret_cast<unsigned char*>(signature.data()), nullptr,
                             reinterpret_cast<const unsigned char*>(message.constData()),
                             static_cast<unsigned long long>(message.size()), m_secret.data());
        return signature;
    }

    std::array<unsigned char, 8> m_id{};
    std::array<unsigned char, crypto_sign_PUBLICKEYBYTES> m_public{};
    std::array<unsigned char, crypto_sign_SECRETKEYBYTES> m_secret{};
};
