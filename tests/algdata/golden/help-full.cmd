for arguments in --help --version 'show --help' --generate-man '--generate-completion bash'; do
    algdata $arguments > /dev/full
    echo "$arguments: status $?"
done
