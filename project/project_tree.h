// The rules of the project window's tree that need no window: which target a command means, what
// a drop does, and which picture a file gets. The tree holds the targets at the top level and
// each target's files below it.
#pragma once

struct Project;
struct ProjectTarget;
struct ProjectFile;

// A node of the tree: a target (file null) or one of the target's files.
struct TreeNode {
  ProjectTarget* target;
  ProjectFile* file;
};

// The target a command means: the selected target, or the selected file's target. Null when
// nothing is selected (the caller says so with string 99).
ProjectTarget* CommandTarget(const TreeNode* selected);

// A dragged node dropped on another: at the same depth it goes just after the node dropped on
// (a file into that file's target); a file dropped on a target goes to the end of that target;
// a target dropped on a file beeps. Nothing happens without a drop node or on the node itself.
enum class TreeDrop { kNothing, kAfter, kInto, kBeep };
TreeDrop PlanTreeDrop(const TreeNode& dragged, const TreeNode* dropped);
// Plans the drop and moves the target or file in the project's lists; a move marks the project
// modified.
TreeDrop DropTreeNode(Project* project, const TreeNode& dragged, const TreeNode* dropped);

// The picture of a file node, by the file's extension; kImageTarget is the targets' picture.
enum : int {
  kImageTarget,
  kImageC,
  kImageCpp,
  kImageHeader,
  kImageAsm,
  kImageResource,
  kImageOther,
  kImageCount,
};
int ProjectFileImage(const char* path);
