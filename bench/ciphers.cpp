#include "bench/OpenSslMd5.h"
#include "common/Base64.h"
#include "common/Des.h"
#include "common/MD5.h"

#include <benchmark/benchmark.h>

#include <QByteArray>

#include <algorithm>
#include <cstdint>
#include <vector>

// Single DES is found in the low-level functions only.
#define OPENSSL_SUPPRESS_DEPRECATED
#include <openssl/des.h>

// Each pair is one row of the table: "<row>/own/<bytes>" and "<row>/floor/<bytes>", of equal work.

namespace {

constexpr unsigned char s_key[8] = {0x13, 0x34, 0x57, 0x79, 0x9B, 0xBC, 0xDF, 0xF1};

std::vector<unsigned char> bytes(std::int64_t length)
{
    std::vector<unsigned char> result(static_cast<std::size_t>(length));
    unsigned int state = 1;
    for (unsigned char& byte : result) {
        state = state * 1103515245 + 12345;
        byte = static_cast<unsigned char>(state >> 16);
    }
    return result;
}

template <class Work> void repeat(benchmark::State& state, const Work& work)
{
    for (auto _ : state) {
        work();
        benchmark::ClobberMemory();
    }
    state.SetBytesProcessed(state.iterations() * state.range(0));
}

void md5Own(benchmark::State& state)
{
    std::vector<unsigned char> data = bytes(state.range(0));
    unsigned char digest[MD5_DIGEST_LEN];
    repeat(state, [&] { MD5Calc(digest, data.data(), static_cast<unsigned int>(data.size())); });
}

void md5Floor(benchmark::State& state)
{
    const std::vector<unsigned char> data = bytes(state.range(0));
    unsigned char digest[MD5_DIGEST_LEN];
    repeat(state, [&] { openSslMd5(data.data(), data.size(), digest); });
}

void desEncryptOwn(benchmark::State& state)
{
    const std::vector<unsigned char> data = bytes(state.range(0));
    std::vector<unsigned char> out(data.size() + 8);
    Symmetric_key key;
    des_setup(s_key, &key);
    repeat(state, [&] {
        des_encrypt(data.data(), static_cast<unsigned int>(data.size()), out.data(),
                    static_cast<unsigned int>(out.size()), &key);
    });
}

void desDecryptOwn(benchmark::State& state)
{
    const std::vector<unsigned char> data = bytes(state.range(0));
    std::vector<unsigned char> out(data.size() + 8);
    Symmetric_key key;
    des_setup(s_key, &key);
    repeat(state, [&] {
        des_decrypt(data.data(), static_cast<unsigned int>(data.size()), out.data(),
                    static_cast<unsigned int>(data.size()), &key);
    });
}

// DES_ecb_encrypt takes one block.
void desFloor(benchmark::State& state, int direction)
{
    std::vector<unsigned char> data = bytes(state.range(0));
    std::vector<unsigned char> out(data.size());
    DES_cblock key;
    std::copy(std::begin(s_key), std::end(s_key), key);
    DES_key_schedule schedule;
    DES_set_key_unchecked(&key, &schedule);
    repeat(state, [&] {
        for (std::size_t offset = 0; offset < data.size(); offset += sizeof(DES_cblock))
            DES_ecb_encrypt(reinterpret_cast<DES_cblock*>(data.data() + offset),
                            reinterpret_cast<DES_cblock*>(out.data() + offset), &schedule, direction);
    });
}

void base64EncodeOwn(benchmark::State& state)
{
    std::vector<unsigned char> data = bytes(state.range(0));
    std::vector<unsigned char> out(data.size() * 2);
    repeat(state, [&] { base64_encode(data.data(), out.data(), static_cast<int>(data.size())); });
}

void base64EncodeFloor(benchmark::State& state)
{
    const std::vector<unsigned char> data = bytes(state.range(0));
    const QByteArray array(reinterpret_cast<const char*>(data.data()), static_cast<int>(data.size()));
    repeat(state, [&] { benchmark::DoNotOptimize(array.toBase64()); });
}

QByteArray base64Text(std::int64_t length)
{
    const std::vector<unsigned char> data = bytes(length);
    return QByteArray(reinterpret_cast<const char*>(data.data()), static_cast<int>(data.size())).toBase64();
}

void base64DecodeOwn(benchmark::State& state)
{
    QByteArray text = base64Text(state.range(0));
    std::vector<unsigned char> out(static_cast<std::size_t>(text.size()));
    auto* in = reinterpret_cast<unsigned char*>(text.data());
    int length = 0;
    repeat(state, [&] { base64_decode(in, out.data(), &length); });
}

void base64DecodeFloor(benchmark::State& state)
{
    const QByteArray text = base64Text(state.range(0));
    repeat(state, [&] { benchmark::DoNotOptimize(QByteArray::fromBase64(text)); });
}

} // namespace

BENCHMARK(md5Own)->Name("md5/own")->Arg(16 << 10)->Arg(40 << 10);
BENCHMARK(md5Floor)->Name("md5/floor")->Arg(16 << 10)->Arg(40 << 10);
BENCHMARK(desEncryptOwn)->Name("des_encrypt/own")->Arg(4 << 10);
BENCHMARK_CAPTURE(desFloor, encrypt, DES_ENCRYPT)->Name("des_encrypt/floor")->Arg(4 << 10);
BENCHMARK(desDecryptOwn)->Name("des_decrypt/own")->Arg(4 << 10);
BENCHMARK_CAPTURE(desFloor, decrypt, DES_DECRYPT)->Name("des_decrypt/floor")->Arg(4 << 10);
BENCHMARK(base64EncodeOwn)->Name("base64_encode/own")->Arg(4 << 10);
BENCHMARK(base64EncodeFloor)->Name("base64_encode/floor")->Arg(4 << 10);
BENCHMARK(base64DecodeOwn)->Name("base64_decode/own")->Arg(4 << 10);
BENCHMARK(base64DecodeFloor)->Name("base64_decode/floor")->Arg(4 << 10);

BENCHMARK_MAIN();
