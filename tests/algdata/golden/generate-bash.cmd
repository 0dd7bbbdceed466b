algdata --generate-completion bash
