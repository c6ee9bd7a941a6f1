// A first-fit allocator for small memories. A block has one word of its own, its size with
// that word; a free one also a link, and the list of the free is in order of address, so that
// neighbours merge when one is freed. Every address is even, which is all that the processor
// asks for.

#include <errno.h>
#include <stdint.h>
#include <stdlib.h>
#include <string.h>

extern void *sbrk(ptrdiff_t increment);

typedef struct Block {
  size_t size;
  struct Block *next;  // only while it is free
} Block;

enum { OVERHEAD = sizeof(size_t) };

static Block *free_blocks;

static Block *end_of(Block *block) {
  return (Block *)((char *)block + block->size);
}

static Block *block_of(void *memory) {
  return (Block *)((char *)memory - OVERHEAD);
}

static void *memory_of(Block *block) {
  return (char *)block + OVERHEAD;
}

// Of a block for that much memory; 0 if there can't be one.
static size_t block_size(size_t size) {
  if (size > PTRDIFF_MAX - 2 * sizeof(Block))
    return 0;
  size = (size + OVERHEAD + 1) & ~(size_t)1;
  return size < sizeof(Block) ? sizeof(Block) : size;
}

// Cuts what a block has over `size` off into a block of its own, null if that is too little.
static Block *split(Block *block, size_t size) {
  if (block->size - size < sizeof(Block))
    return NULL;
  Block *rest = (Block *)((char *)block + size);
  rest->size = block->size - size;
  block->size = size;
  return rest;
}

static Block *take_free(size_t size) {
  for (Block **link = &free_blocks; *link; link = &(*link)->next) {
    Block *block = *link;
    if (block->size < size)
      continue;
    Block *next = block->next;
    Block *rest = split(block, size);
    if (rest) {
      rest->next = next;
      next = rest;
    }
    *link = next;
    return block;
  }
  return NULL;
}

// A free block at the end of the heap grows instead of staying behind as a hole.
static Block *extend(size_t size) {
  Block **link = &free_blocks;
  while (*link && (*link)->next)
    link = &(*link)->next;
  Block *last = *link;
  char *end = sbrk(0);
  if (last && (char *)end_of(last) == end) {
    if (sbrk((ptrdiff_t)(size - last->size)) == (void *)-1)
      return NULL;
    *link = NULL;
  } else {
    const ptrdiff_t odd = (ptrdiff_t)((uintptr_t)end & 1);
    last = sbrk((ptrdiff_t)size + odd);
    if (last == (void *)-1)
      return NULL;
    last = (Block *)((char *)last + odd);
  }
  last->size = size;
  return last;
}

void *malloc(size_t size) {
  size = block_size(size);
  Block *block = size == 0 ? NULL : take_free(size);
  if (!block && size != 0)
    block = extend(size);
  if (!block) {
    errno = ENOMEM;
    return NULL;
  }
  return memory_of(block);
}

void free(void *memory) {
  if (!memory)
    return;
  Block *block = block_of(memory);
  Block *before = NULL;
  Block *after = free_blocks;
  for (; after && after < block; after = after->next)
    before = after;
  block->next = after;
  if (after && end_of(block) == after) {
    block->size += after->size;
    block->next = after->next;
  }
  if (!before) {
    free_blocks = block;
  } else if (end_of(before) == block) {
    before->size += block->size;
    before->next = block->next;
  } else {
    before->next = block;
  }
}

void *calloc(size_t count, size_t size) {
  if (size != 0 && count > SIZE_MAX / size) {
    errno = ENOMEM;
    return NULL;
  }
  void *memory = malloc(count * size);
  return memory ? memset(memory, 0, count * size) : NULL;
}

void *realloc(void *memory, size_t size) {
  if (!memory)
    return malloc(size);
  if (size == 0) {
    free(memory);
    return NULL;
  }
  Block *block = block_of(memory);
  const size_t wanted = block_size(size);
  if (wanted != 0 && wanted <= block->size) {
    Block *rest = split(block, wanted);
    if (rest)
      free(memory_of(rest));
    return memory;
  }
  void *larger = malloc(size);
  if (!larger)
    return NULL;
  memcpy(larger, memory, block->size - OVERHEAD);
  free(memory);
  return larger;
}
