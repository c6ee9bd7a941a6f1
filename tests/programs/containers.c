// A list, a binary tree and a hash table on the heap.
#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

typedef struct Node { struct Node *next; int16_t value; } Node;
typedef struct Tree { struct Tree *left, *right; int16_t key; uint8_t count; } Tree;
typedef struct Entry { struct Entry *next; uint16_t value; char key[8]; } Entry;

static Node *push(Node *list, int16_t value) {
  Node *node = malloc(sizeof *node);
  node->next = list;
  node->value = value;
  return node;
}

static Node *reverse(Node *list) {
  Node *result = NULL;
  while (list) {
    Node *next = list->next;
    list->next = result;
    result = list;
    list = next;
  }
  return result;
}

static void insert(Tree **tree, int16_t key) {
  while (*tree && (*tree)->key != key)
    tree = key < (*tree)->key ? &(*tree)->left : &(*tree)->right;
  if (!*tree) {
    *tree = calloc(1, sizeof **tree);
    (*tree)->key = key;
  }
  (*tree)->count++;
}

static void walk(Tree *tree) {
  if (!tree)
    return;
  walk(tree->left);
  printf("%dx%d ", tree->key, tree->count);
  walk(tree->right);
  free(tree);
}

static Entry *buckets[16];

static uint16_t *lookup(const char *key) {
  uint16_t hash = 5381;
  for (const char *c = key; *c; c++)
    hash = (uint16_t)(hash * 33 + (uint8_t)*c);
  Entry **link = &buckets[hash % 16];
  for (; *link; link = &(*link)->next)
    if (strcmp((*link)->key, key) == 0)
      return &(*link)->value;
  *link = calloc(1, sizeof **link);
  strcpy((*link)->key, key);
  return &(*link)->value;
}

int main(void) {
  Node *list = NULL;
  for (int16_t i = 0; i < 10; i++)
    list = push(list, (int16_t)(i * i));
  for (Node *node = list = reverse(list); node; node = node->next)
    printf("%d ", node->value);
  printf("\n");
  Tree *tree = NULL;
  for (int i = 0; i < 60; i++)
    insert(&tree, (int16_t)(i * 37 % 23 - 11));
  walk(tree);
  printf("\n");
  static const char text[] = "a rose is a rose is a rose but a daisy is not a rose";
  char word[8];
  for (const char *c = text; sscanf(c, "%7s", word) == 1;) {
    ++*lookup(word);
    c += strlen(word);
    c += strspn(c, " ");
  }
  printf("%u %u %u %u\n", *lookup("a"), *lookup("rose"), *lookup("is"), *lookup("none"));
  return 0;
}
