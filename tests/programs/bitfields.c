// Bit-fields, signed and unsigned, within one 16-bit unit so that every compiler lays them out
// alike.
#include <stdint.h>
#include <stdio.h>

struct Packet {
  uint8_t kind : 3;
  uint8_t flag : 1;
  uint8_t count : 4;
};

struct Signed {
  int8_t small : 3;
  int8_t rest : 5;
};

struct Status {
  uint16_t carry : 1, zero : 1, negative : 1, gie : 1, cpuoff : 1, oscoff : 1, scg : 2, v : 1;
  uint16_t reserved : 7;
};

union StatusWord {
  struct Status bits;
  uint16_t word;
};

static struct Packet bump(struct Packet packet) {
  packet.count++;
  packet.kind += 3;
  packet.flag ^= 1;
  return packet;
}

int main(void) {
  struct Packet packet = {5, 1, 14};
  for (int i = 0; i < 5; i++) {
    printf("%d %d %d\n", packet.kind, packet.flag, packet.count);
    packet = bump(packet);
  }
  struct Signed s = {-4, 15};
  for (int i = 0; i < 9; i++) {
    printf("%d %d\n", s.small, s.rest);
    s.small++;
    s.rest -= 5;
  }
  union StatusWord status = {.word = 0};
  status.bits.scg = 3;
  status.bits.gie = 1;
  status.bits.v = 1;
  printf("%04x\n", status.word);
  status.word |= 0x0035;
  printf("%d %d %d %d %d\n", status.bits.carry, status.bits.negative, status.bits.cpuoff,
         status.bits.oscoff, status.bits.reserved);
  return 0;
}
